#include "statusbar/StatusBarController.h"
#include "tests/platform/FakeScreens.h"

#include <gtest/gtest.h>

namespace pelistra {
namespace {

using testing::plainScreen;

class LengthsTest : public ::testing::Test {
protected:
    double collapsedWith(std::vector<Screen> screens) {
        screens_.list = std::move(screens);
        return StatusBarController::Lengths::collapsed(screens_);
    }

    testing::Journal journal_;
    testing::FakeScreens screens_{journal_};
};

TEST_F(LengthsTest, ExpandedIsFourteenPoints) {
    EXPECT_EQ(StatusBarController::Lengths::expanded, 14);
}

TEST_F(LengthsTest, CollapsedIsTwiceTheScreensWidth) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 1512)}), 3024);
}

TEST_F(LengthsTest, CollapsedIsTwiceTheWidestScreensWidth) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 1920), plainScreen(1920, 2560)}), 5120);
    EXPECT_EQ(collapsedWith({plainScreen(0, 2560), plainScreen(2560, 1920)}), 5120);
}

TEST_F(LengthsTest, CollapsedIsAtMostTenThousandPoints) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 6016)}), 10'000);
    EXPECT_EQ(collapsedWith({plainScreen(0, 5000)}), 10'000);
    EXPECT_EQ(collapsedWith({plainScreen(0, 4999)}), 9998);
}

TEST_F(LengthsTest, CollapsedIsAtLeastFiveHundredPoints) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 200)}), 500);
    EXPECT_EQ(collapsedWith({plainScreen(0, 251)}), 502);
}

TEST_F(LengthsTest, WithoutAScreenCollapsedIsAFixedLength) {
    EXPECT_EQ(collapsedWith({}), 3456);
}

TEST_F(LengthsTest, TheScreensAreReadAfreshEveryTime) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 1512)}), 3024);
    EXPECT_EQ(collapsedWith({plainScreen(0, 1512), plainScreen(1512, 2560)}), 5120);
}

} // namespace
} // namespace pelistra
