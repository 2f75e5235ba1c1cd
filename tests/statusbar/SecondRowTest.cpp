#include "tests/statusbar/StatusBarFixture.h"

#include "tests/platform/ViewProbe.h"
#include "ui/Content.h"

#include <stdexcept>

namespace pelistra::testing {
namespace {

using ::testing::IsEmpty;

using SecondRowTest = StatusBarFixture;

TEST_F(SecondRowTest, IsMadeOnFirstUseAndKept) {
    startCollapsed();
    EXPECT_THAT(fake_.panels.made, IsEmpty());

    for (int click = 0; click < 4; ++click) {
        leftClick();
        passLatch();
    }
    optionClick();
    leftClick();
    passLatch();
    leftClick();

    EXPECT_EQ(fake_.panels.made.size(), 1U);
    EXPECT_FALSE(fake_.panels.made[0]->destroyed);
}

TEST_F(SecondRowTest, OpensBelowTheArrow) {
    startCollapsed();
    leftClick();

    const auto& panel = *fake_.panels.made.at(0);
    EXPECT_EQ(panel.frame().maxY(), 958 - 6);
}

TEST_F(SecondRowTest, TheArrowPointsUpWhileItIsOpen) {
    startCollapsed();
    leftClick();

    EXPECT_EQ(arrow(), "chevron.up");
    EXPECT_EQ(control().button->image->accessibilityDescription, "关闭第二行溢出栏");
}

TEST_F(SecondRowTest, TheArrowPointsDownWhenItCloses) {
    startWithOpenRow();
    leftClick();

    EXPECT_EQ(arrow(), "chevron.down");
}

TEST_F(SecondRowTest, TheArrowPointsDownWhenAClickElsewhereClosesIt) {
    startWithOpenRow();
    fake_.globalClicks.clickElsewhere(EventType::LeftMouseDown);
    fake_.mainQueue.runUntilIdle();

    EXPECT_FALSE(rowIsOpen());
    EXPECT_EQ(arrow(), "chevron.down");
    EXPECT_TRUE(isCollapsed());
}

TEST_F(SecondRowTest, WhenItCannotBePlacedTheArrowKeepsPointingDown) {
    startCollapsed();
    control().button->frame.reset();
    leftClick();

    EXPECT_FALSE(rowIsOpen());
    EXPECT_EQ(arrow(), "chevron.down");
}

TEST_F(SecondRowTest, WithoutTheSymbolTheArrowHasNoPicture) {
    startCollapsed();
    fake_.images.missingSymbols = {"chevron.up"};
    leftClick();

    EXPECT_TRUE(rowIsOpen());
    EXPECT_EQ(control().button->image, nullptr);
}

TEST_F(SecondRowTest, ArrangingExpandsAndClosesIt) {
    startWithOpenRow();
    press(row(), "展开原菜单栏图标并重新整理");

    EXPECT_FALSE(isCollapsed());
    EXPECT_FALSE(rowIsOpen());
    EXPECT_EQ(arrow(), "chevron.right");
}

TEST_F(SecondRowTest, ExpandingWhileItIsOpenClosesItAndTheArrowTurnsRight) {
    startWithOpenRow();
    optionClick();

    EXPECT_FALSE(rowIsOpen());
    EXPECT_EQ(arrow(), "chevron.right");
}

TEST_F(SecondRowTest, ShowsTheIconsOfTheControllersList) {
    hideIcon(201, 21, "Mail");
    startWithOpenRow();

    EXPECT_NO_THROW(rightClick(row(), 0, fake_.application));
    EXPECT_THROW(rightClick(row(), 1, fake_.application), std::out_of_range);
}

TEST_F(SecondRowTest, DoesNothingToTheControllerOnceThatIsGone) {
    hideIcon(201, 21, "Mail");
    startWithOpenRow();
    const auto content = fake_.panels.made.at(0)->content;
    const auto body = content->body();
    controller_.reset();
    fake_.journal.clear();

    press(body, "展开原菜单栏图标并重新整理");
    rightClick(body, 0, fake_.application);
    fake_.globalClicks.clickElsewhere(EventType::LeftMouseDown);
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(fake_.journal.entriesStartingWith("PelistraV3"), IsEmpty());
    EXPECT_THAT(fake_.journal.entriesStartingWith("log"), IsEmpty());
}

} // namespace
} // namespace pelistra::testing
