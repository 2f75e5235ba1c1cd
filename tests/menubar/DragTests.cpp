#include "menubar/Drag.h"

#include <vector>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::boundedDragX;
using menubar::DropPlace;
using menubar::Gap;
using menubar::nearestPlace;

constexpr int widthOfBar = 1000;

DropPlace place(const std::vector<int>& others, int width, int wantedX,
                std::optional<Gap> housing = {}) {
    return nearestPlace(others, width, wantedX, widthOfBar, housing);
}

TEST(DragTests, TheNearestPlaceWins) {
    const std::vector<int> others{28, 28, 28}; // From 916 with the dragged one left of them: 888.
    EXPECT_EQ(place(others, 28, 972), (DropPlace{.index = 3, .x = 972}));
    EXPECT_EQ(place(others, 28, 950), (DropPlace{.index = 2, .x = 944}));
    EXPECT_EQ(place(others, 28, 0), (DropPlace{.index = 0, .x = 888}));
    EXPECT_EQ(place({}, 28, 5), (DropPlace{.index = 0, .x = 972}));
}

TEST(DragTests, HalfTheWayToTheNextPlaceIsNotEnough) {
    const std::vector<int> others{28};
    EXPECT_EQ(place(others, 28, 972 - 14).index, 1U);
    EXPECT_EQ(place(others, 28, 972 - 15).index, 0U);
}

TEST(DragTests, AWideItemIsPassedOnlyByItsWholeWidth) {
    const std::vector<int> others{300};
    EXPECT_EQ(place(others, 28, 850).index, 1U);
    EXPECT_EQ(place(others, 28, 800).index, 0U);
}

TEST(DragTests, AStretchedDividerIsNotPassed) {
    // What is left of it is off the screen: no place there is near.
    EXPECT_EQ(place({28, 3000, 28}, 28, 0).index, 2U);
}

TEST(DragTests, AStretchedDividerCanBeDraggedItself) {
    // Right of one item it begins at -2028; a little to the right it goes past that item.
    EXPECT_EQ(place({28, 28}, 3000, -2028).index, 1U);
    EXPECT_EQ(place({28, 28}, 3000, -2010).index, 2U);
    EXPECT_EQ(place({28, 28}, 3000, -2050).index, 0U);
}

TEST(DragTests, PlacesBeyondTheHousingAreReached) {
    const Gap housing{.begin = 800, .end = 930};
    // Two fit right of the housing, the third stands left of it.
    EXPECT_EQ(place({28, 28}, 28, 772, housing), (DropPlace{.index = 0, .x = 772}));
    EXPECT_EQ(place({28, 28}, 28, 900, housing), (DropPlace{.index = 1, .x = 944}));
}

TEST(DragTests, ADraggedItemStaysInTheBar) {
    EXPECT_EQ(boundedDragX(-5, 28, widthOfBar), 0);
    EXPECT_EQ(boundedDragX(990, 28, widthOfBar), 972);
    EXPECT_EQ(boundedDragX(500, 28, widthOfBar), 500);
    // One wider than the bar covers it all the time.
    EXPECT_EQ(boundedDragX(5, 3000, widthOfBar), 0);
    EXPECT_EQ(boundedDragX(-2500, 3000, widthOfBar), -2000);
}

} // namespace
} // namespace pelistra::testing
