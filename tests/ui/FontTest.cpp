#include "ui/Font.h"

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using namespace ui;

TEST(Font, TextStylesHaveTheDesktopsSizesAndWeights) {
    EXPECT_EQ(pointSize({.size = TextStyle::Caption2}), 10);
    EXPECT_EQ(pointSize({.size = TextStyle::Caption}), 10);
    EXPECT_EQ(pointSize({.size = TextStyle::Subheadline}), 11);
    EXPECT_EQ(pointSize({.size = TextStyle::Body}), 13);
    EXPECT_EQ(pointSize({.size = TextStyle::Headline}), 13);
    EXPECT_EQ(pointSize({.size = TextStyle::Title3}), 15);
    EXPECT_EQ(effectiveWeight({.size = TextStyle::Caption2}), Weight::Medium);
    EXPECT_EQ(effectiveWeight({.size = TextStyle::Body}), Weight::Regular);
    EXPECT_EQ(effectiveWeight({.size = TextStyle::Headline}), Weight::Bold);
}

TEST(Font, SizesAreTakenAsTheyAre) {
    EXPECT_EQ(pointSize({.size = 34.0}), 34);
    EXPECT_EQ(effectiveWeight({.size = 34.0}), Weight::Regular);
}

TEST(Font, AGivenWeightWins) {
    EXPECT_EQ(effectiveWeight({.size = TextStyle::Headline, .weight = Weight::Medium}),
              Weight::Medium);
    EXPECT_EQ(effectiveWeight({.size = 18.0, .weight = Weight::Medium}), Weight::Medium);
}

TEST(Font, EverythingGrowsWithTheDesktopsBody) {
    EXPECT_EQ(pointSize({}, 26), 26);
    EXPECT_EQ(pointSize({.size = TextStyle::Caption}, 19.5), 15);
    EXPECT_EQ(pointSize({.size = 34.0}, 26), 68);
}

} // namespace
} // namespace pelistra::testing
