#include "tests/platform/ViewProbe.h"
#include "tests/statusbar/StatusBarFixture.h"

#include <algorithm>
#include <limits>

namespace pelistra::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

constexpr auto revealedToolTip = "点击：重新折叠临时显示的图标";
constexpr auto unknownPlace = "无法读取该图标的当前位置。";
constexpr auto notVisible = "该图标完全展开后仍位于刘海或可见区域之外。";
constexpr auto noReaction = "目标图标已显示，但没有响应定向点击。";
constexpr auto notCollapsed = "请先折叠隐藏区，再从第二行尝试原托盘菜单。";

constexpr double checkDelay = 0.22;

// Three icons of 24 points; expanded they start at 1362, 1338 and 1314.
class TemporaryRevealTest : public StatusBarFixture {
protected:
    static constexpr WindowId rightmost = 201;
    static constexpr WindowId leftmost = 203;
    // The numbers of their areas in the row, which reads from left to right.
    static constexpr std::size_t leftmostInRow = 0;
    static constexpr std::size_t rightmostInRow = 2;

    TemporaryRevealTest() {
        hideIcon(rightmost, 21, "Mail");
        hideIcon(202, 22, "Chat");
        hideIcon(leftmost, 23, "Sync");
    }

    // A housing between 662 and 850 on the first screen.
    void addHousing() {
        auto& screen = fake_.screens.list.at(0);
        screen.auxiliaryTopLeftArea = makeRect<ScreenSpace>(0, 950, 662, 32);
        screen.auxiliaryTopRightArea = makeRect<ScreenSpace>(850, 950, 662, 32);
    }

    // Collapsed, the row open, and every icon's home known as its place before the collapse: the
    // refreshes have seen nothing.
    void openRowWithHomes() {
        startCollapsed();
        fake_.privateLibrary.listError = 1;
        leftClick();
        passLatch();
        takeJournal();
        fake_.log.lines.clear();
    }

    // The same, but the homes are the places of the collapsed section.
    void openRowWithCollapsedHomes() {
        startWithOpenRow();
        fake_.privateLibrary.listError = 1;
        takeJournal();
    }

    void rightClickIcon(std::size_t number) { rightClick(row(), number, fake_.application); }

    // How many targeted clicks were posted to the process.
    [[nodiscard]] std::size_t clicksOn(ProcessId pid) const {
        return fake_.journal.entriesStartingWith("post 1 " + std::to_string(pid)).size();
    }

    [[nodiscard]] double frameX(WindowId id) const {
        return fake_.privateLibrary.frames.at(id).minX();
    }

    void expectNormalCollapsedLook() {
        EXPECT_EQ(divider().length, collapsedLength);
        EXPECT_EQ(arrow(), "chevron.down");
        EXPECT_EQ(control().button->toolTip, controlToolTip);
    }
};

// The start of a reveal.

TEST_F(TemporaryRevealTest, ShortensTheDividerThenClicksAndStays) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);

    EXPECT_FALSE(rowIsOpen());
    // From -1648 to 4.
    EXPECT_EQ(divider().length, collapsedLength - 1652);
    EXPECT_EQ(frameX(rightmost), 4);
    EXPECT_EQ(clicksOn(21), 0U);

    passTime(checkDelay);
    EXPECT_EQ(clicksOn(21), 1U);
    EXPECT_EQ(divider().length, collapsedLength - 1652);
    EXPECT_THAT(logged(), ElementsAre("info: Temporarily revealed and activated window 201"));
}

TEST_F(TemporaryRevealTest, DoesEverythingInItsOrder) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);

    EXPECT_THAT(takeJournal(),
                ElementsAre("globalClicks.remove", "panel.orderOut",
                            // The row reports that it has closed.
                            "symbol chevron.down", "PelistraV3.Control.image = chevron.down",
                            // Any earlier reveal ends.
                            "PelistraV3.Control.toolTip = " + std::string(controlToolTip),
                            "PelistraV3.Divider.length = 3024", "symbol chevron.down",
                            "PelistraV3.Control.image = chevron.down",
                            // Where the icon is.
                            "mainConnection", "windowFrame(77, 201)",
                            // The reveal.
                            "symbol chevron.right", "PelistraV3.Control.image = chevron.right",
                            "PelistraV3.Control.toolTip = " + std::string(revealedToolTip),
                            "PelistraV3.Divider.length = 1372", "after 0.22"));
}

TEST_F(TemporaryRevealTest, TheArrowSaysThatAClickEndsIt) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);

    EXPECT_EQ(arrow(), "chevron.right");
    EXPECT_EQ(control().button->image->accessibilityDescription, "隐藏左侧图标");
    EXPECT_TRUE(control().button->image->isTemplate);
    EXPECT_EQ(control().button->toolTip, revealedToolTip);
}

TEST_F(TemporaryRevealTest, TheCheckComesAfterItsDelayAndNotBefore) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    passTime(0.219);
    EXPECT_EQ(clicksOn(21), 0U);

    passTime(0.001);
    EXPECT_EQ(clicksOn(21), 1U);
}

TEST_F(TemporaryRevealTest, AMessageOfBeforeIsCleared) {
    openRowWithHomes();
    fake_.runningApplications.running[22].refusesActivation = true;
    press(row(), "Chat\n左键：打开应用；右键：打开原托盘菜单");
    const std::string message = "Chat 没有可打开的主窗口；可右键点击该图标，尝试打开原托盘菜单。";
    ASSERT_TRUE(rowShows(message));
    rightClickIcon(leftmostInRow);

    EXPECT_FALSE(rowShows(message));
}

TEST_F(TemporaryRevealTest, WhileExpandedItOnlySaysToCollapseFirst) {
    openRowWithHomes();
    const auto body = row();
    optionClick();
    takeJournal();
    rightClick(body, rightmostInRow, fake_.application);

    EXPECT_TRUE(rowShows(notCollapsed));
    EXPECT_THAT(takeJournal(), IsEmpty());
    passTime(1);
    EXPECT_FALSE(rowIsOpen());
    EXPECT_EQ(divider().length, 14);
}

TEST_F(TemporaryRevealTest, WithoutALiveFrameItDoesNotStart) {
    openRowWithHomes();
    fake_.privateLibrary.frames.erase(rightmost);
    fake_.statusBar.afterLengthChange = nullptr;
    rightClickIcon(rightmostInRow);
    expectNormalCollapsedLook();
    EXPECT_FALSE(rowIsOpen());

    fake_.mainQueue.runTurn();
    EXPECT_TRUE(rowIsOpen());
    EXPECT_TRUE(rowShows(unknownPlace));
    passTime(1);
    EXPECT_EQ(divider().length, collapsedLength);
    EXPECT_THAT(logged(), IsEmpty());
}

TEST_F(TemporaryRevealTest, WithoutAScreenForItsHomeItDoesNotStart) {
    openRowWithHomes();
    const auto screens = fake_.screens.list;
    fake_.screens.list.clear();
    fake_.screens.mainScreen.reset();
    rightClickIcon(rightmostInRow);
    fake_.screens.list = screens;
    fake_.mainQueue.runTurn();

    EXPECT_TRUE(rowIsOpen());
    EXPECT_TRUE(rowShows(unknownPlace));
    passTime(1);
    EXPECT_EQ(clicksOn(21), 0U);
}

TEST_F(TemporaryRevealTest, WithoutAControlButtonTheRevealGoesOnWithoutItsLook) {
    openRowWithHomes();
    const auto button = control().button;
    control().button = nullptr;
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);

    EXPECT_EQ(clicksOn(21), 1U);
    EXPECT_EQ(button->toolTip, controlToolTip);
}

TEST_F(TemporaryRevealTest, WithoutAControlButtonAFailureOnlySetsTheMessage) {
    openRowWithHomes();
    fake_.privateLibrary.frames.erase(rightmost);
    fake_.statusBar.afterLengthChange = nullptr;
    control().button = nullptr;
    rightClickIcon(rightmostInRow);

    EXPECT_EQ(fake_.mainQueue.waitingBlocks(), 0U);
    EXPECT_TRUE(rowShows(unknownPlace));
    EXPECT_FALSE(rowIsOpen());
}

// Where the icon is brought.

TEST_F(TemporaryRevealTest, BesideAHousingTheIconComesToTheRightArea) {
    addHousing();
    openRowWithHomes();
    rightClickIcon(rightmostInRow);

    EXPECT_EQ(frameX(rightmost), 854);
    passTime(checkDelay);
    EXPECT_EQ(clicksOn(21), 1U);
}

TEST_F(TemporaryRevealTest, OnASecondScreenTheIconComesInsideThatOne) {
    // The menu bar is on the right screen; the left one reaches far to the left.
    fake_.screens.list = {plainScreen(-1000, 2200), plainScreen(1200, 312)};
    openRowWithHomes();
    rightClickIcon(rightmostInRow);

    EXPECT_EQ(frameX(rightmost), 1204);
    passTime(checkDelay);
    EXPECT_EQ(clicksOn(21), 1U);
}

TEST_F(TemporaryRevealTest, TheScreenIsThatOfTheHomesCentre) {
    // The home, from 1362 to 1386, lies across the edge between the screens.
    fake_.screens.list = {plainScreen(0, 1372), plainScreen(1372, 1000)};
    openRowWithHomes();
    rightClickIcon(rightmostInRow);

    EXPECT_EQ(frameX(rightmost), 1362);
}

TEST_F(TemporaryRevealTest, AHomeLeftOfTheHousingIsWhereTheIconComes) {
    addHousing();
    // A wide neighbour keeps the rightmost icon's left neighbour far from the divider.
    icons_[0].width = 800;
    layOut();
    openRowWithHomes();
    // Its home is 562.
    rightClickIcon(leftmostInRow + 1);

    EXPECT_EQ(frameX(202), 562);
    passTime(checkDelay);
    EXPECT_EQ(clicksOn(22), 1U);
}

TEST_F(TemporaryRevealTest, AnIconAtItsTargetKeepsTheDividersLength) {
    openRowWithCollapsedHomes();
    rightClickIcon(rightmostInRow);

    EXPECT_EQ(divider().length, collapsedLength);
}

TEST_F(TemporaryRevealTest, AHomeOfTheCollapsedSectionLeadsToTheFullReveal) {
    openRowWithCollapsedHomes();
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);

    EXPECT_EQ(divider().length, 14);
    EXPECT_EQ(clicksOn(21), 0U);
    passTime(checkDelay);
    EXPECT_EQ(clicksOn(21), 1U);
    EXPECT_EQ(divider().length, 14);
    EXPECT_THAT(logged(), ElementsAre("info: Temporarily revealed and activated window 201"));
}

// The checks.

TEST_F(TemporaryRevealTest, AnIconAcrossTheHousingIsRevealedInFull) {
    addHousing();
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    // The menu bar has put it half under the housing.
    fake_.privateLibrary.frames[rightmost] = makeRect<GlobalSpace>(640, 0, 30, 24);
    takeJournal();
    passTime(checkDelay);

    EXPECT_EQ(clicksOn(21), 0U);
    EXPECT_EQ(divider().length, 14);
    EXPECT_EQ(fake_.journal.entriesStartingWith("after 0.22").size(), 1U);
}

TEST_F(TemporaryRevealTest, AnIconWithoutAFrameAtTheFirstCheckIsRevealedInFull) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    fake_.privateLibrary.frames.erase(rightmost);
    passTime(checkDelay);
    EXPECT_EQ(divider().length, 14);

    // The layout after that has it again.
    passTime(checkDelay);
    EXPECT_EQ(clicksOn(21), 1U);
}

TEST_F(TemporaryRevealTest, TheSecondCheckComesAfterItsDelayAndNotBefore) {
    openRowWithCollapsedHomes();
    rightClickIcon(rightmostInRow);
    passTime(checkDelay + 0.219);
    EXPECT_EQ(clicksOn(21), 0U);

    passTime(0.001);
    EXPECT_EQ(clicksOn(21), 1U);
}

TEST_F(TemporaryRevealTest, AnIconThatNeverComesIntoViewIsGivenUpAfterTwoChecks) {
    addHousing();
    openRowWithHomes();
    fake_.statusBar.afterLengthChange = nullptr;
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);
    EXPECT_EQ(divider().length, 14);
    passTime(0.219);
    EXPECT_EQ(divider().length, 14);
    passTime(0.001);

    EXPECT_TRUE(rowShows(notVisible));
    EXPECT_TRUE(rowIsOpen());
    EXPECT_EQ(clicksOn(21), 0U);
    EXPECT_EQ(divider().length, collapsedLength);
    EXPECT_EQ(control().button->toolTip, controlToolTip);
    EXPECT_THAT(logged(), IsEmpty());
    takeJournal();
    passTime(1);
    EXPECT_THAT(fake_.journal.entriesStartingWith("PelistraV3.Divider.length"), IsEmpty());
}

TEST_F(TemporaryRevealTest, AFailureCollapsesBeforeTheRowOpensAgain) {
    openRowWithHomes();
    fake_.statusBar.afterLengthChange = nullptr;
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);
    takeJournal();
    passTime(checkDelay);

    const auto entries = takeJournal();
    const auto collapsed = std::ranges::find(entries, "PelistraV3.Divider.length = 3024");
    const auto shown = std::ranges::find(entries, "panel.orderFrontRegardless");
    ASSERT_NE(collapsed, entries.end());
    ASSERT_NE(shown, entries.end());
    EXPECT_LT(collapsed, shown);
    EXPECT_EQ(arrow(), "chevron.up");
}

TEST_F(TemporaryRevealTest, AFirstCheckThatFailsAtTheShortestLengthReportsAtOnce) {
    // So far left that the divider has to give all it has.
    openRowWithHomes();
    fake_.statusBar.afterLengthChange = nullptr;
    fake_.privateLibrary.frames[rightmost] = makeRect<GlobalSpace>(-9000, 0, 24, 24);
    rightClickIcon(rightmostInRow);
    EXPECT_EQ(divider().length, 14);
    takeJournal();
    passTime(checkDelay);

    EXPECT_TRUE(rowShows(notVisible));
    EXPECT_THAT(fake_.journal.entriesStartingWith("after 0.22"), IsEmpty());
    EXPECT_EQ(divider().length, collapsedLength);
}

TEST_F(TemporaryRevealTest, AClickWithoutReactionCollapsesAndReplacesTheListsMessage) {
    openRowWithHomes();
    fake_.eventPosting.refusesSource = true;
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);

    EXPECT_TRUE(rowShows(noReaction));
    EXPECT_FALSE(rowShows("无法触发 Mail 的原托盘菜单。"));
    EXPECT_TRUE(rowIsOpen());
    EXPECT_EQ(divider().length, collapsedLength);
    EXPECT_EQ(control().button->toolTip, controlToolTip);
    EXPECT_THAT(logged(), IsEmpty());
}

// What ends a reveal.

TEST_F(TemporaryRevealTest, TheNextArrowClickCollapsesAgain) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);
    leftClick();

    expectNormalCollapsedLook();
    EXPECT_FALSE(rowIsOpen());
}

TEST_F(TemporaryRevealTest, TheArrowClickThatEndsItSetsNoLatch) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);
    takeJournal();
    leftClick();
    EXPECT_THAT(fake_.journal.entries(), Not(Contains("after 0.25")));

    leftClick();
    EXPECT_TRUE(rowIsOpen());
}

TEST_F(TemporaryRevealTest, AnArrowClickDuringAPendingCheckVoidsIt) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    passTime(0.1);
    leftClick();
    takeJournal();
    passTime(1);

    expectNormalCollapsedLook();
    EXPECT_EQ(clicksOn(21), 0U);
    EXPECT_FALSE(rowIsOpen());
    EXPECT_THAT(fake_.journal.entriesStartingWith("windowFrame"), IsEmpty());
}

TEST_F(TemporaryRevealTest, AnArrowClickDuringTheSecondCheckVoidsItToo) {
    openRowWithCollapsedHomes();
    rightClickIcon(rightmostInRow);
    passTime(checkDelay + 0.1);
    ASSERT_EQ(divider().length, 14);
    leftClick();
    passTime(1);

    expectNormalCollapsedLook();
    EXPECT_EQ(clicksOn(21), 0U);
}

TEST_F(TemporaryRevealTest, AScreenChangeCollapsesAgain) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);
    fake_.screens.list.push_back(plainScreen(1512, 2560));
    fake_.screens.announceChange();

    EXPECT_EQ(divider().length, 5120);
    EXPECT_EQ(arrow(), "chevron.down");
    EXPECT_EQ(control().button->toolTip, controlToolTip);
}

TEST_F(TemporaryRevealTest, AScreenChangeVoidsAPendingCheck) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    fake_.screens.announceChange();
    passTime(1);

    EXPECT_EQ(clicksOn(21), 0U);
    EXPECT_EQ(divider().length, collapsedLength);
}

TEST_F(TemporaryRevealTest, AnOptionClickExpandsAndVoidsAPendingCheck) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    optionClick();
    passTime(1);

    EXPECT_EQ(clicksOn(21), 0U);
    EXPECT_EQ(divider().length, 14);
    EXPECT_EQ(control().button->toolTip, controlToolTip);
    EXPECT_EQ(arrow(), "chevron.right");
}

TEST_F(TemporaryRevealTest, AfterAnOptionClickTheNextClickCollapsesAsUsual) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);
    optionClick();
    leftClick();

    expectNormalCollapsedLook();
    EXPECT_EQ(fake_.mainQueue.runningTimers(), 1U);
}

TEST_F(TemporaryRevealTest, ASecondRevealVoidsTheFirstOnesCheck) {
    openRowWithHomes();
    const auto body = row();
    rightClick(body, rightmostInRow, fake_.application);
    passTime(0.1);
    rightClick(body, leftmostInRow, fake_.application);
    // The target of the leftmost icon, counted from the collapsed length.
    EXPECT_EQ(frameX(leftmost), 4);

    passTime(0.12);
    EXPECT_EQ(clicksOn(21), 0U);
    EXPECT_EQ(clicksOn(23), 0U);
    passTime(0.1);
    EXPECT_EQ(clicksOn(21), 0U);
    EXPECT_EQ(clicksOn(23), 1U);
}

TEST_F(TemporaryRevealTest, ARightClickOnTheArrowLeavesItAsItIs) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    passTime(checkDelay);
    takeJournal();
    rightClickArrow();

    EXPECT_THAT(takeJournal(), ElementsAre("showSettings"));
}

TEST_F(TemporaryRevealTest, TheSectionStaysCollapsedWhileAnIconIsRevealed) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    passTime(10);

    EXPECT_EQ(fake_.mainQueue.runningTimers(), 1U);
    EXPECT_EQ(divider().length, collapsedLength - 1652);
}

TEST_F(TemporaryRevealTest, APendingCheckDoesNothingOnceTheControllerIsGone) {
    openRowWithHomes();
    rightClickIcon(rightmostInRow);
    controller_.reset();
    fake_.journal.clear();
    passTime(1);

    EXPECT_THAT(fake_.journal.entries(), IsEmpty());
}

TEST_F(TemporaryRevealTest, ARowThatIsToOpenAgainStaysAwayOnceTheControllerIsGone) {
    openRowWithHomes();
    fake_.privateLibrary.frames.erase(rightmost);
    fake_.statusBar.afterLengthChange = nullptr;
    rightClickIcon(rightmostInRow);
    controller_.reset();
    fake_.journal.clear();
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(fake_.journal.entries(), IsEmpty());
}

TEST_F(TemporaryRevealTest, ARowIsNotOpenedUnderAButtonThatIsGone) {
    openRowWithHomes();
    fake_.privateLibrary.frames.erase(rightmost);
    fake_.statusBar.afterLengthChange = nullptr;
    rightClickIcon(rightmostInRow);
    control().button = nullptr;
    fake_.mainQueue.runUntilIdle();

    EXPECT_FALSE(rowIsOpen());
}

} // namespace
} // namespace pelistra::testing
