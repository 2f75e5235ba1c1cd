#pragma once

#include "platform/StatusBar.h"
#include "platform/WindowList.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace pelistra::testing {

// What every menu bar promises of the frames that it publishes. Backend:
//   StatusBar& bar();                      with no item in it at first
//   WindowList& windows();
//   ProcessId ownPid();
//   bool runUntil(condition);              as of a main queue
template <class Backend>
class StatusItemContract : public ::testing::Test {
protected:
    // Of the item's window in the window list; empty when it is not there.
    [[nodiscard]] std::optional<WindowInfo> listed(const std::string& name) {
        for (const WindowInfo& window :
             backend_.windows().copyWindowInfo().value_or(std::vector<WindowInfo>{})) {
            if (window.name == name && window.ownerPid == backend_.ownPid() &&
                window.layer == statusWindowLayer) {
                return window;
            }
        }
        return std::nullopt;
    }
    // Both say the same place and width.
    [[nodiscard]] bool isShown(const std::string& name, const StatusItem& item, double width) {
        return backend_.runUntil([this, name, &item, width] {
            const auto window = listed(name);
            const auto frame = item.button()->windowFrame();
            return window && window->bounds && frame && window->bounds->width == width &&
                   window->bounds->x == frame->origin.x && frame->size.width == width;
        });
    }

    Backend backend_;
};

TYPED_TEST_SUITE_P(StatusItemContract);

TYPED_TEST_P(StatusItemContract, AnItemsWindowIsFoundByItsNameWhereItsButtonIs) {
    const auto item = this->backend_.bar().statusItem(30);
    item->setAutosaveName("PelistraV3.Control");
    ASSERT_NE(item->button(), nullptr);
    EXPECT_TRUE(this->isShown("PelistraV3.Control", *item, 30));
    EXPECT_EQ(item->length(), 30);
}

TYPED_TEST_P(StatusItemContract, AnItemGrowsToTheLeft) {
    const auto item = this->backend_.bar().statusItem(30);
    item->setAutosaveName("PelistraV3.Control");
    ASSERT_TRUE(this->isShown("PelistraV3.Control", *item, 30));
    const double right = item->button()->windowFrame()->maxX();
    item->setLength(300);
    EXPECT_EQ(item->length(), 300);
    ASSERT_TRUE(this->isShown("PelistraV3.Control", *item, 300));
    EXPECT_EQ(item->button()->windowFrame()->maxX(), right);
    item->setLength(14);
    ASSERT_TRUE(this->isShown("PelistraV3.Control", *item, 14));
    EXPECT_EQ(item->button()->windowFrame()->maxX(), right);
}

TYPED_TEST_P(StatusItemContract, ASquareItemIsAsWideAsTheBarIsHigh) {
    const auto item = this->backend_.bar().statusItem(StatusItem::squareLength);
    item->setAutosaveName("PelistraV3.Control");
    EXPECT_TRUE(this->backend_.runUntil([&] {
        const auto frame = item->button()->windowFrame();
        return frame && frame->size.width > 0 && frame->size.width == frame->size.height;
    }));
    EXPECT_EQ(item->length(), StatusItem::squareLength);
}

TYPED_TEST_P(StatusItemContract, AnItemThatIsInvisibleOrGoneIsNotListed) {
    auto item = this->backend_.bar().statusItem(30);
    item->setAutosaveName("PelistraV3.Control");
    ASSERT_TRUE(this->isShown("PelistraV3.Control", *item, 30));
    item->setVisible(false);
    EXPECT_TRUE(this->backend_.runUntil([&] { return !this->listed("PelistraV3.Control"); }));
    item->setVisible(true);
    ASSERT_TRUE(this->isShown("PelistraV3.Control", *item, 30));
    item.reset();
    EXPECT_TRUE(this->backend_.runUntil([&] { return !this->listed("PelistraV3.Control"); }));
}

REGISTER_TYPED_TEST_SUITE_P(StatusItemContract, AnItemsWindowIsFoundByItsNameWhereItsButtonIs,
                            AnItemGrowsToTheLeft, ASquareItemIsAsWideAsTheBarIsHigh,
                            AnItemThatIsInvisibleOrGoneIsNotListed);

} // namespace pelistra::testing
