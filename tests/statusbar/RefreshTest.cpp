#include "tests/statusbar/StatusBarFixture.h"
#include "tests/ui/ViewQueries.h"

#include <algorithm>

namespace pelistra::testing {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

class RefreshTest : public StatusBarFixture {
protected:
    // How often the window server was asked for the menu bar's windows.
    [[nodiscard]] std::size_t looks() const {
        return fake_.journal.entriesStartingWith("menuBarWindowList").size();
    }

    // How many icons the second row holds.
    [[nodiscard]] std::size_t iconsInRow() const { return all<ui::Represented>(row()).size(); }
};

TEST_F(RefreshTest, TheListIsRefreshedEveryTwoSecondsWhileCollapsed) {
    hideIcon(201, 21);
    startCollapsed();

    // 0.25 seconds have passed already.
    passTime(1.7);
    EXPECT_EQ(looks(), 0U);
    passTime(0.05);
    EXPECT_EQ(looks(), 1U);
    passTime(6);
    EXPECT_EQ(looks(), 4U);
}

TEST_F(RefreshTest, ATickHopsToTheMainQueueOnce) {
    startCollapsed();
    passTime(1.75);

    EXPECT_THAT(fake_.journal.entries(), Contains("async").Times(1));
}

TEST_F(RefreshTest, ATickBringsNewIconsIntoTheRow) {
    hideIcon(201, 21);
    startWithOpenRow();
    EXPECT_EQ(iconsInRow(), 1U);

    hideIcon(202, 22);
    passTime(2);
    EXPECT_EQ(iconsInRow(), 2U);
}

TEST_F(RefreshTest, ATickWithoutADividerFrameDoesNothing) {
    hideIcon(201, 21);
    startCollapsed();
    fake_.windowList.remove(dividerName);
    passTime(4);

    EXPECT_EQ(looks(), 0U);
    EXPECT_TRUE(isCollapsed());
}

TEST_F(RefreshTest, NoTimerRunsAndNoListIsReadWhileExpanded) {
    start();
    passTime(60);

    EXPECT_EQ(fake_.mainQueue.runningTimers(), 0U);
    EXPECT_THAT(takeJournal(), IsEmpty());
}

TEST_F(RefreshTest, ExpandingEndsTheTimer) {
    startCollapsed();
    optionClick();
    takeJournal();
    passTime(60);

    EXPECT_EQ(fake_.mainQueue.runningTimers(), 0U);
    EXPECT_THAT(takeJournal(), IsEmpty());
}

TEST_F(RefreshTest, ATickThatIsUnderWayWhenTheSectionExpandsDoesNothing) {
    hideIcon(201, 21);
    start();
    // Due together with the tick: its turn comes before the tick's.
    fake_.mainQueue.asyncAfter(Seconds(2),
                               [this] { fake_.mainQueue.async([this] { optionClick(); }); });
    leftClick();
    fake_.journal.clear();
    passTime(2);

    EXPECT_THAT(fake_.journal.entries(), Contains("async").Times(2));
    EXPECT_EQ(looks(), 0U);
}

TEST_F(RefreshTest, ATickDoesNothingOnceTheControllerIsGone) {
    startCollapsed();
    controller_.reset();
    fake_.journal.clear();
    passTime(10);

    EXPECT_THAT(fake_.journal.entries(), IsEmpty());
}

TEST_F(RefreshTest, CollapsingAgainStartsTheTwoSecondsAnew) {
    hideIcon(201, 21);
    startCollapsed();
    passTime(1);
    optionClick();
    leftClick();
    fake_.journal.clear();

    passTime(1.9);
    EXPECT_EQ(looks(), 0U);
    passTime(0.1);
    EXPECT_EQ(looks(), 1U);
    EXPECT_EQ(fake_.mainQueue.runningTimers(), 1U);
}

TEST_F(RefreshTest, TheListIsRefreshedBeforeTheRowOpens) {
    hideIcon(201, 21);
    startCollapsed();
    hideIcon(202, 22);
    leftClick();

    EXPECT_EQ(looks(), 1U);
    EXPECT_EQ(iconsInRow(), 2U);
    const auto entries = takeJournal();
    const auto look = std::ranges::find_if(
        entries, [](const std::string& entry) { return entry.starts_with("menuBarWindowList"); });
    const auto shown = std::ranges::find(entries, "panel.orderFrontRegardless");
    ASSERT_NE(shown, entries.end());
    EXPECT_LT(look, shown);
}

TEST_F(RefreshTest, TheListIsRefreshedBeforeTheRowClosesToo) {
    hideIcon(201, 21);
    startWithOpenRow();
    leftClick();

    EXPECT_EQ(looks(), 1U);
    EXPECT_FALSE(rowIsOpen());
}

TEST_F(RefreshTest, WithoutADividerFrameTheRowOpensUnrefreshed) {
    hideIcon(201, 21);
    startCollapsed();
    fake_.windowList.remove(dividerName);
    leftClick();

    EXPECT_EQ(looks(), 0U);
    EXPECT_TRUE(rowIsOpen());
}

// Changes of the screens.

TEST_F(RefreshTest, AScreenChangeWhileExpandedDoesNothing) {
    start();
    fake_.screens.list = {plainScreen(0, 1512), plainScreen(1512, 2560)};
    fake_.screens.announceChange();

    EXPECT_THAT(takeJournal(), IsEmpty());
    EXPECT_EQ(divider().length, 14);
}

TEST_F(RefreshTest, AScreenChangeWhileCollapsedFitsTheLength) {
    startCollapsed();
    EXPECT_EQ(divider().length, 3024);
    fake_.screens.list = {plainScreen(0, 1512), plainScreen(1512, 2560)};
    fake_.screens.announceChange();

    EXPECT_EQ(divider().length, 5120);
}

TEST_F(RefreshTest, AScreenChangeWhileCollapsedKeepsTheState) {
    startCollapsed();
    fake_.screens.announceChange();

    EXPECT_EQ(fake_.mainQueue.runningTimers(), 1U);
    EXPECT_EQ(arrow(), "chevron.down");
    EXPECT_THAT(logged(), IsEmpty());
}

} // namespace
} // namespace pelistra::testing
