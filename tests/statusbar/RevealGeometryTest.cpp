#include "statusbar/RevealGeometry.h"

#include "tests/platform/FakeScreens.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelistra {
namespace {

using testing::plainScreen;

Rect itemAt(double x, double width = 24) {
    return makeRect<GlobalSpace>(x, 0, width, 24);
}

// 1512 points wide, with a housing between 662 and 850.
Screen screenWithHousing(double x = 0) {
    auto screen = plainScreen(x, 1512);
    screen.auxiliaryTopLeftArea = makeRect<ScreenSpace>(x, 950, 662, 32);
    screen.auxiliaryTopRightArea = makeRect<ScreenSpace>(x + 850, 950, 662, 32);
    return screen;
}

class RevealGeometryTest : public ::testing::Test {
protected:
    testing::Journal journal_;
    testing::FakeScreens screens_{journal_};
    RevealGeometry geometry_{screens_};
};

// The screen of a coordinate.

TEST_F(RevealGeometryTest, AScreenSpansItsEdges) {
    screens_.list = {plainScreen(100, 1000)};
    screens_.mainScreen.reset();

    EXPECT_TRUE(geometry_.screen(100).has_value());
    EXPECT_TRUE(geometry_.screen(1100).has_value());
    EXPECT_FALSE(geometry_.screen(99.9).has_value());
    EXPECT_FALSE(geometry_.screen(1100.1).has_value());
}

TEST_F(RevealGeometryTest, OnACommonEdgeTheFirstScreenWins) {
    screens_.list = {plainScreen(1512, 2560), plainScreen(0, 1512)};

    EXPECT_EQ(geometry_.screen(1512)->frame.minX(), 1512);
    EXPECT_EQ(geometry_.screen(1511)->frame.minX(), 0);
}

TEST_F(RevealGeometryTest, OutsideAllScreensTheMainOneCounts) {
    screens_.list = {plainScreen(0, 1512), plainScreen(1512, 2560)};
    screens_.mainScreen = screens_.list[1];

    EXPECT_EQ(geometry_.screen(-1500)->frame.minX(), 1512);
}

TEST_F(RevealGeometryTest, WithoutAMainScreenThereIsNone) {
    screens_.list.clear();
    screens_.mainScreen.reset();

    EXPECT_FALSE(geometry_.screen(0).has_value());
}

// What is safely visible.

TEST_F(RevealGeometryTest, OnAPlainScreenAnItemMustStayTwoPointsClearOfTheEdges) {
    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(2)));
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(1.9)));
    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(1512 - 2 - 24)));
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(1512 - 1.9 - 24)));
}

TEST_F(RevealGeometryTest, OnlyTheHorizontalExtentIsTested) {
    EXPECT_TRUE(geometry_.isSafelyVisible(makeRect<GlobalSpace>(700, -5000, 24, 24)));
}

TEST_F(RevealGeometryTest, BesideAHousingEachSideIsVisible) {
    screens_.list = {screenWithHousing()};

    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(2)));
    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(662 - 2 - 24)));
    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(852)));
    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(1512 - 2 - 24)));
}

TEST_F(RevealGeometryTest, AnItemThatOverlapsTheHousingOrAnEdgeIsNotVisible) {
    screens_.list = {screenWithHousing()};

    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(650)));
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(662 - 1.9 - 24)));
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(740)));
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(851.9)));
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(660, 200)));
}

TEST_F(RevealGeometryTest, AScreenWithOneAreaOffersThatOneOnly) {
    auto screen = screenWithHousing();
    screen.auxiliaryTopLeftArea.reset();
    screens_.list = {screen};
    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(900)));
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(100)));

    screen = screenWithHousing();
    screen.auxiliaryTopRightArea.reset();
    screens_.list = {screen};
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(900)));
    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(100)));
}

TEST_F(RevealGeometryTest, TheScreenIsThatOfTheItemsCentre) {
    screens_.list = {plainScreen(0, 1512), screenWithHousing(1512)};

    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(740)));
    EXPECT_TRUE(geometry_.isSafelyVisible(itemAt(1512 + 100)));
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(1512 + 740)));
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(1512 - 12)));
}

TEST_F(RevealGeometryTest, OutsideAllScreensNothingIsVisible) {
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(-1500)));

    screens_.list.clear();
    screens_.mainScreen.reset();
    EXPECT_FALSE(geometry_.isSafelyVisible(itemAt(100)));
}

// The temporary length.

TEST_F(RevealGeometryTest, WithoutAHousingAnItemComesToFourPointsInsideTheScreen) {
    const double length = RevealGeometry::temporaryDividerLength(itemAt(-1600), itemAt(900),
                                                                 plainScreen(0, 1512), 3024);

    EXPECT_EQ(length, 3024 - (4 + 1600));
}

TEST_F(RevealGeometryTest, AHomeFurtherLeftIsWhereTheItemComes) {
    const double length = RevealGeometry::temporaryDividerLength(itemAt(-1600), itemAt(1),
                                                                 plainScreen(0, 1512), 3024);

    EXPECT_EQ(length, 3024 - (1 + 1600));
}

TEST_F(RevealGeometryTest, BesideAHousingAnItemComesToFourPointsInsideTheRightArea) {
    const double length = RevealGeometry::temporaryDividerLength(itemAt(-1600), itemAt(1000),
                                                                 screenWithHousing(), 3024);

    EXPECT_EQ(length, 3024 - (854 + 1600));
}

TEST_F(RevealGeometryTest, BesideAHousingAHomeLeftOfItIsWhereTheItemComes) {
    const double length = RevealGeometry::temporaryDividerLength(itemAt(-1600), itemAt(600),
                                                                 screenWithHousing(), 3024);

    EXPECT_EQ(length, 3024 - (600 + 1600));
}

TEST_F(RevealGeometryTest, OnASecondScreenTheLeftEdgeIsThatScreens) {
    const double length = RevealGeometry::temporaryDividerLength(itemAt(-1600), itemAt(2400),
                                                                 plainScreen(1512, 2560), 5120);

    EXPECT_EQ(length, 5120 - (1516 + 1600));
}

TEST_F(RevealGeometryTest, AnItemAtOrRightOfItsTargetLeavesTheLength) {
    const auto screen = plainScreen(0, 1512);

    EXPECT_EQ(RevealGeometry::temporaryDividerLength(itemAt(4), itemAt(900), screen, 3024), 3024);
    EXPECT_EQ(RevealGeometry::temporaryDividerLength(itemAt(700), itemAt(900), screen, 3024), 3024);
    EXPECT_EQ(RevealGeometry::temporaryDividerLength(itemAt(-800), itemAt(-800), screen, 3024),
              3024);
}

TEST_F(RevealGeometryTest, AFractionOfAPointCounts) {
    const double length = RevealGeometry::temporaryDividerLength(itemAt(3.5), itemAt(900),
                                                                 plainScreen(0, 1512), 3024);

    EXPECT_EQ(length, 3023.5);
}

TEST_F(RevealGeometryTest, TheLengthNeverGoesBelowTheExpandedOne) {
    const double length = RevealGeometry::temporaryDividerLength(itemAt(-9000), itemAt(900),
                                                                 plainScreen(0, 1512), 3024);

    EXPECT_EQ(length, 14);
}

TEST_F(RevealGeometryTest, ADistanceThatIsNotANumberMovesNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();

    EXPECT_EQ(RevealGeometry::temporaryDividerLength(itemAt(nan), itemAt(900), plainScreen(0, 1512),
                                                     3024),
              3024);
}

} // namespace
} // namespace pelistra
