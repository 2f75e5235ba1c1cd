#include "statusbar/NumberText.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelistra {
namespace {

TEST(NumberTextTest, FixedTextHasSixDigitsAfterThePoint) {
    EXPECT_EQ(fixedText(3024), "3024.000000");
    EXPECT_EQ(fixedText(1234.5), "1234.500000");
    EXPECT_EQ(fixedText(-0.1234567), "-0.123457");
    EXPECT_EQ(fixedText(0), "0.000000");
}

TEST(NumberTextTest, ShortestTextAlwaysHasAFractionalPart) {
    EXPECT_EQ(shortestDecimalText(3024), "3024.0");
    EXPECT_EQ(shortestDecimalText(-1), "-1.0");
    EXPECT_EQ(shortestDecimalText(0), "0.0");
    EXPECT_EQ(shortestDecimalText(10'000), "10000.0");
}

TEST(NumberTextTest, ShortestTextHasNoMoreDigitsThanNeeded) {
    EXPECT_EQ(shortestDecimalText(0.1), "0.1");
    EXPECT_EQ(shortestDecimalText(3023.5), "3023.5");
    EXPECT_EQ(shortestDecimalText(1.0 / 3), "0.3333333333333333");
}

TEST(NumberTextTest, WhatIsNoNumberGetsNoFractionalPart) {
    EXPECT_EQ(shortestDecimalText(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(shortestDecimalText(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST(NumberTextTest, EveryDoubleHasRoom) {
    EXPECT_EQ(fixedText(std::numeric_limits<double>::lowest()).size(), 1U + 309 + 1 + 6);
    EXPECT_EQ(shortestDecimalText(std::numeric_limits<double>::max()).size(), 309U + 2);
    EXPECT_TRUE(shortestDecimalText(std::numeric_limits<double>::denorm_min()).ends_with("5"));
}

TEST(NumberTextTest, BooleansAreWords) {
    EXPECT_EQ(booleanText(true), "true");
    EXPECT_EQ(booleanText(false), "false");
}

} // namespace
} // namespace pelistra
