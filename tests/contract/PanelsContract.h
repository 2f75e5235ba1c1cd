#pragma once

#include "platform/Panel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace pelistra::testing {

// What every maker of panels promises. Backend:
//   Panels& panels();
//   std::optional<ScreenRect> shownFrame();  of the panel's content, as the system shows it; empty
//   while it shows none bool runUntil(condition);                as of a main queue
template <class Backend>
class PanelsContract : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<Panel> makePanel() {
        auto panel = backend_.panels().panel({.contentSize = {.width = 200, .height = 78},
                                              .styleMask = window_style::nonactivatingPanel,
                                              .title = "Pelistra 第二行"});
        panel->setFrameOrigin({.x = 100, .y = 300});
        return panel;
    }
    [[nodiscard]] bool shows(const std::optional<ScreenRect>& frame) {
        return backend_.runUntil([this, frame] { return backend_.shownFrame() == frame; });
    }

    Backend backend_;
};

TYPED_TEST_SUITE_P(PanelsContract);

TYPED_TEST_P(PanelsContract, APanelIsMadeHidden) {
    const auto panel = this->makePanel();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_EQ(this->backend_.shownFrame(), std::nullopt);
}

TYPED_TEST_P(PanelsContract, ItComesWhereItWasPlacedAndGoes) {
    const auto panel = this->makePanel();
    panel->orderFrontRegardless();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_TRUE(this->shows(makeRect<ScreenSpace>(100, 300, 200, 78)));
    panel->orderOut();
    EXPECT_FALSE(panel->isVisible());
    EXPECT_TRUE(this->shows(std::nullopt));
    panel->orderFrontRegardless();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_TRUE(this->shows(makeRect<ScreenSpace>(100, 300, 200, 78)));
}

TYPED_TEST_P(PanelsContract, ItTakesANewSizeAndPlaceWhileItShows) {
    const auto panel = this->makePanel();
    panel->orderFrontRegardless();
    ASSERT_TRUE(this->shows(makeRect<ScreenSpace>(100, 300, 200, 78)));
    panel->setContentSize({.width = 320, .height = 80});
    panel->setFrameOrigin({.x = 40, .y = 200});
    EXPECT_TRUE(this->shows(makeRect<ScreenSpace>(40, 200, 320, 80)));
}

TYPED_TEST_P(PanelsContract, ItGoesWithItsObject) {
    auto panel = this->makePanel();
    panel->orderFrontRegardless();
    ASSERT_TRUE(this->shows(makeRect<ScreenSpace>(100, 300, 200, 78)));
    panel.reset();
    EXPECT_TRUE(this->shows(std::nullopt));
}

REGISTER_TYPED_TEST_SUITE_P(PanelsContract, APanelIsMadeHidden, ItComesWhereItWasPlacedAndGoes,
                            ItTakesANewSizeAndPlaceWhileItShows, ItGoesWithItsObject);

} // namespace pelistra::testing
