#include "menubar/ItemList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::DockedItem;
using menubar::ItemList;
using menubar::ItemState;
using ::testing::ElementsAre;

class ItemListTests : public ::testing::Test {
protected:
    // Adds an item at the right end.
    DockedItem& add(xcb_window_t client, ItemState state = ItemState::Shown,
                    const std::string& name = "name", int ordinal = 0) {
        auto item = std::make_unique<DockedItem>();
        item->client = client;
        item->state = state;
        item->wantsMapped = state != ItemState::Waiting;
        item->identity = {.instance = name, .className = name, .ordinal = ordinal};
        DockedItem& reference = *item;
        list_.insert(list_.size(), std::move(item));
        return reference;
    }

    [[nodiscard]] std::vector<xcb_window_t> clients() const {
        std::vector<xcb_window_t> result;
        for (const auto& item : list_.all()) {
            result.push_back(item->client);
        }
        return result;
    }

    ItemList list_;
};

TEST_F(ItemListTests, FindsByWindow) {
    const DockedItem& one = add(1);
    add(2);
    EXPECT_EQ(list_.find(1), &one);
    EXPECT_EQ(list_.find(3), nullptr);
}

TEST_F(ItemListTests, OnlyShownItemsHaveSlots) {
    const DockedItem& one = add(1);
    add(2, ItemState::Waiting);
    add(3, ItemState::Arriving);
    const DockedItem& four = add(4);
    EXPECT_THAT(list_.shown(), ElementsAre(&one, &four));
    EXPECT_EQ(list_.shownRightOf(one), 1U);
    EXPECT_EQ(list_.shownRightOf(four), 0U);
}

TEST_F(ItemListTests, PositionsAmongShownItemsBecomePositionsAmongAll) {
    add(1);
    add(2, ItemState::Waiting);
    add(3, ItemState::Arriving);
    add(4, ItemState::Waiting);
    EXPECT_EQ(list_.countForShown(0), 0U);
    EXPECT_EQ(list_.countForShown(1), 2U);
    EXPECT_EQ(list_.countForShown(2), 4U);
    EXPECT_EQ(list_.countForShown(9), 4U);
}

TEST_F(ItemListTests, OrdinalsFillGaps) {
    EXPECT_EQ(list_.freeOrdinal("a", "a"), 0);
    add(1, ItemState::Shown, "a", 0);
    add(2, ItemState::Shown, "a", 2);
    EXPECT_EQ(list_.freeOrdinal("a", "a"), 1);
    EXPECT_EQ(list_.freeOrdinal("a", "b"), 0);
}

TEST_F(ItemListTests, MovesAmongShownItems) {
    const DockedItem& one = add(1);
    add(2, ItemState::Waiting);
    add(3);
    add(4);
    list_.moveAmongShown(one, 1);
    EXPECT_THAT(clients(), ElementsAre(2, 3, 1, 4));
    list_.moveAmongShown(one, 2);
    EXPECT_THAT(clients(), ElementsAre(2, 3, 4, 1));
    list_.moveAmongShown(one, 0);
    EXPECT_THAT(clients(), ElementsAre(2, 1, 3, 4));
}

TEST_F(ItemListTests, TakesItemsOut) {
    add(1);
    add(2);
    EXPECT_EQ(list_.take(1)->client, 1U);
    EXPECT_EQ(list_.take(1), nullptr);
    EXPECT_THAT(clients(), ElementsAre(2));
}

TEST(DockedItemTests, OnlyChangedHintsAreAWish) {
    using menubar::PixelSize;
    using menubar::WishSource;
    DockedItem item;
    item.noteHints(PixelSize{.width = 22, .height = 22});
    EXPECT_EQ(item.wish.source, WishSource::SizeHints);
    item.wish.source = WishSource::ResizeRequest;
    item.wish.size = {.width = 90, .height = 20};
    item.noteHints(PixelSize{.width = 22, .height = 22});
    EXPECT_EQ(item.wish.source, WishSource::ResizeRequest);
    item.noteHints(PixelSize{.width = 50, .height = 22});
    EXPECT_EQ(item.wish.size.width, 50);
    item.noteHints(std::nullopt);
    EXPECT_EQ(item.wish.source, WishSource::None);
}

TEST(DockedItemTests, IsNamedInTheLog) {
    DockedItem item;
    item.client = 0x1a00003;
    item.identity.instance = "nabi";
    EXPECT_EQ(describe(item), "'nabi' (window 0x1a00003)");
}

} // namespace
} // namespace pelistra::testing
