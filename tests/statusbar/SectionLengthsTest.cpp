#include "statusbar/SectionLengths.h"
#include "tests/platform/FakeScreens.h"

#include <gtest/gtest.h>

namespace pelistra {
namespace {

using testing::plainScreen;

class SectionLengthsTest : public ::testing::Test {
protected:
    double collapsedWith(std::vector<Screen> screens) {
        screens_.list = std::move(screens);
        return SectionLengths::collapsed(screens_);
    }

    testing::Journal journal_;
    testing::FakeScreens screens_{journal_};
};

TEST_F(SectionLengthsTest, ExpandedIsFourteenPoints) {
    EXPECT_EQ(SectionLengths::expanded, 14);
}

TEST_F(SectionLengthsTest, CollapsedIsTwiceTheScreensWidth) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 1512)}), 3024);
}

TEST_F(SectionLengthsTest, CollapsedIsTwiceTheWidestScreensWidth) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 1920), plainScreen(1920, 2560)}), 5120);
    EXPECT_EQ(collapsedWith({plainScreen(0, 2560), plainScreen(2560, 1920)}), 5120);
}

TEST_F(SectionLengthsTest, CollapsedIsAtMostTenThousandPoints) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 6016)}), 10'000);
    EXPECT_EQ(collapsedWith({plainScreen(0, 5000)}), 10'000);
    EXPECT_EQ(collapsedWith({plainScreen(0, 4999)}), 9998);
}

TEST_F(SectionLengthsTest, CollapsedIsAtLeastFiveHundredPoints) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 200)}), 500);
    EXPECT_EQ(collapsedWith({plainScreen(0, 251)}), 502);
}

TEST_F(SectionLengthsTest, WithoutAScreenCollapsedIsAFixedLength) {
    EXPECT_EQ(collapsedWith({}), 3456);
}

TEST_F(SectionLengthsTest, TheScreensAreReadAfreshEveryTime) {
    EXPECT_EQ(collapsedWith({plainScreen(0, 1512)}), 3024);
    EXPECT_EQ(collapsedWith({plainScreen(0, 1512), plainScreen(1512, 2560)}), 5120);
}

} // namespace
} // namespace pelistra
