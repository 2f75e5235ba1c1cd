#include "base/Geometry.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace pelistra {
namespace {

TEST(GeometryTest, ARectangleKnowsItsEdgesAndItsMiddle) {
    const Rect rect = makeRect<GlobalSpace>(10, 20, 30, 40);

    EXPECT_DOUBLE_EQ(rect.minX(), 10);
    EXPECT_DOUBLE_EQ(rect.maxX(), 40);
    EXPECT_DOUBLE_EQ(rect.midX(), 25);
    EXPECT_DOUBLE_EQ(rect.minY(), 20);
    EXPECT_DOUBLE_EQ(rect.maxY(), 60);
    EXPECT_DOUBLE_EQ(rect.midY(), 40);
    EXPECT_DOUBLE_EQ(rect.width(), 30);
    EXPECT_DOUBLE_EQ(rect.height(), 40);
}

TEST(GeometryTest, ANegativeSizeCoversTheSameArea) {
    const Rect rect = makeRect<GlobalSpace>(40, 60, -30, -40);

    EXPECT_DOUBLE_EQ(rect.minX(), 10);
    EXPECT_DOUBLE_EQ(rect.maxX(), 40);
    EXPECT_DOUBLE_EQ(rect.midX(), 25);
    EXPECT_DOUBLE_EQ(rect.minY(), 20);
    EXPECT_DOUBLE_EQ(rect.maxY(), 60);
    EXPECT_DOUBLE_EQ(rect.midY(), 40);
    EXPECT_DOUBLE_EQ(rect.width(), 30);
    EXPECT_DOUBLE_EQ(rect.height(), 40);
}

TEST(GeometryTest, TheFirstEdgesBelongToARectangleAndTheLastOnesDoNot) {
    const ScreenRect rect = makeRect<ScreenSpace>(10, 20, 30, 40);

    EXPECT_TRUE(rect.contains({.x = 10, .y = 20}));
    EXPECT_TRUE(rect.contains({.x = 39.9, .y = 59.9}));
    EXPECT_FALSE(rect.contains({.x = 40, .y = 30}));
    EXPECT_FALSE(rect.contains({.x = 20, .y = 60}));
    EXPECT_FALSE(rect.contains({.x = 9.9, .y = 30}));
    EXPECT_FALSE(rect.contains({.x = 20, .y = 19.9}));
}

TEST(GeometryTest, TheTwoSpacesDoNotMix) {
    static_assert(!std::is_convertible_v<Rect, ScreenRect>);
    static_assert(!std::is_convertible_v<Point, ScreenPoint>);
    EXPECT_EQ((Point{.x = 1, .y = 2}), (Point{.x = 1, .y = 2}));
    EXPECT_NE((Point{.x = 1, .y = 2}), (Point{.x = 1, .y = 3}));
}

} // namespace
} // namespace pelistra
