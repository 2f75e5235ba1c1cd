#include "tests/statusbar/StatusBarFixture.h"

#include <algorithm>

namespace pelistra::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CollapseTest : public StatusBarFixture {
protected:
    static std::vector<std::string> without(std::vector<std::string> entries,
                                            const std::vector<std::string>& prefixes) {
        std::erase_if(entries, [&](const std::string& entry) {
            return std::ranges::any_of(
                prefixes, [&](const std::string& prefix) { return entry.starts_with(prefix); });
        });
        return entries;
    }

    // What the list of hidden icons asks for in a snapshot or refresh.
    static std::vector<std::string> listPrefixes() {
        return {"mainConnection", "windowCount",        "menuBarWindowList", "windowFrame",
                "preflight",      "runningApplication", "localizedName",     "capture",
                "source",         "runningApplications"};
    }
};

// Collapsing.

TEST_F(CollapseTest, DoesEverythingInItsOrder) {
    start();
    leftClick();

    EXPECT_THAT(without(takeJournal(), listPrefixes()),
                ElementsAre("PelistraV3.Control.toolTip = " + std::string(controlToolTip),
                            // Both frames for the order, then the divider's once more.
                            "copyWindowInfo", "copyWindowInfo", "copyWindowInfo",
                            "log info: Snapshotted 0 overflow item(s)",
                            "PelistraV3.Divider.image = none", "symbol chevron.down",
                            "PelistraV3.Control.image = chevron.down",
                            "PelistraV3.Divider.length = 3024", "every 2",
                            "log info: Collapsed divider to length 3024.000000", "after 0.25"));
}

TEST_F(CollapseTest, TheHiddenIconsAreTakenWhileTheyAreStillOnScreen) {
    hideIcon(201, 21, "Mail");
    hideIcon(202, 22, "Chat");
    start();
    leftClick();
    const auto entries = takeJournal();

    const auto snapshot = std::ranges::find(entries, "log info: Snapshotted 2 overflow item(s)");
    const auto grown = std::ranges::find(entries, "PelistraV3.Divider.length = 3024");
    ASSERT_NE(snapshot, entries.end());
    ASSERT_NE(grown, entries.end());
    EXPECT_LT(snapshot, grown);
}

TEST_F(CollapseTest, TheSnapshotIsTakenLeftOfTheDividersFrameAsReadOnceMore) {
    hideIcon(201, 21);
    start();
    const int before = fake_.windowList.answers;
    fake_.windowList.beforeAnswer = [this, before](int answered) {
        if (answered == before + 2) {
            // The divider has gone left of the icon (which stands at 1362) meanwhile.
            fake_.windowList.place(fake_.application.pid, dividerName, 1300, 14);
            layoutIsFixed_ = true;
        }
    };
    leftClick();

    EXPECT_TRUE(fake_.journal.contains("log info: Snapshotted 0 overflow item(s)"));
}

TEST_F(CollapseTest, WithoutADividerFrameAtTheLastMomentThereIsNoSnapshotButACollapse) {
    start();
    const int before = fake_.windowList.answers;
    fake_.windowList.beforeAnswer = [this, before](int answered) {
        if (answered == before + 2) {
            fake_.windowList.remove(dividerName);
        }
    };
    leftClick();

    EXPECT_TRUE(isCollapsed());
    EXPECT_THAT(fake_.journal.entriesStartingWith("log info: Snapshotted"), IsEmpty());
}

TEST_F(CollapseTest, TheDividerBecomesAnEmptyLongItemAndTheArrowPointsDown) {
    start();
    leftClick();

    EXPECT_EQ(divider().length, collapsedLength);
    EXPECT_EQ(divider().button->image, nullptr);
    EXPECT_EQ(arrow(), "chevron.down");
    EXPECT_EQ(control().button->image->accessibilityDescription, "打开第二行溢出栏");
    EXPECT_TRUE(control().button->image->isTemplate);
}

TEST_F(CollapseTest, NeitherMakesNorOpensTheSecondRow) {
    start();
    leftClick();

    EXPECT_THAT(fake_.panels.made, IsEmpty());
}

TEST_F(CollapseTest, LogsTheLengthAsReadAgain) {
    start();
    fake_.statusBar.afterLengthChange = [this] {
        layOut();
        fake_.screens.list = {plainScreen(0, 2560)};
    };
    leftClick();

    EXPECT_EQ(divider().length, collapsedLength);
    EXPECT_THAT(logged(), ElementsAre("info: Collapsed divider to length 5120.000000"));
}

TEST_F(CollapseTest, WithoutButtonsTheDividerStillGrows) {
    fake_.application.processArguments.emplace_back("--start-collapsed");
    fake_.statusBar.itemsWithoutButton = {0, 1};
    start();

    EXPECT_EQ(divider().length, collapsedLength);
}

// The refusal.

TEST_F(CollapseTest, IsRefusedWhileTheDividerIsRightOfTheControl) {
    start();
    placeItems(1450, 1400);
    leftClick();

    EXPECT_EQ(divider().length, 14);
    EXPECT_EQ(arrow(), "chevron.right");
    EXPECT_EQ(fake_.mainQueue.runningTimers(), 0U);
    EXPECT_THAT(logged(),
                ElementsAre("error: Refusing to collapse because divider is not left of control",
                            "info: Expanded hidden section"));
}

TEST_F(CollapseTest, IsRefusedWhileBothStandAtOnePlace) {
    start();
    placeItems(1400, 1400);
    leftClick();

    EXPECT_FALSE(isCollapsed());
    EXPECT_THAT(logged(),
                Contains("error: Refusing to collapse because divider is not left of control"));
}

TEST_F(CollapseTest, IsRefusedWithoutTheDividersWindow) {
    start();
    fake_.windowList.remove(dividerName);
    leftClick();

    EXPECT_FALSE(isCollapsed());
    EXPECT_THAT(logged(),
                Contains("error: Refusing to collapse because divider is not left of control"));
}

TEST_F(CollapseTest, IsRefusedWithoutTheControlsWindow) {
    start();
    fake_.windowList.remove(controlName);
    leftClick();

    EXPECT_FALSE(isCollapsed());
    EXPECT_THAT(logged(),
                Contains("error: Refusing to collapse because divider is not left of control"));
}

TEST_F(CollapseTest, IsRefusedWithoutAnAnswerOfTheWindowServer) {
    start();
    fake_.windowList.windows.reset();
    leftClick();

    EXPECT_FALSE(isCollapsed());
    EXPECT_THAT(logged(),
                Contains("error: Refusing to collapse because divider is not left of control"));
}

TEST_F(CollapseTest, ARefusalTakesNoSnapshotAndAppliesTheExpandedLook) {
    start();
    placeItems(1450, 1400);
    leftClick();

    const std::string toolTip = "PelistraV3.Control.toolTip = " + std::string(controlToolTip);
    EXPECT_THAT(
        takeJournal(),
        ElementsAre(toolTip, "copyWindowInfo", "copyWindowInfo",
                    "log error: Refusing to collapse because divider is not left of control",
                    toolTip, "drawn image", "PelistraV3.Divider.image = drawn",
                    "symbol chevron.right", "PelistraV3.Control.image = chevron.right",
                    "PelistraV3.Divider.length = 14", "log info: Expanded hidden section",
                    "after 0.25"));
}

TEST_F(CollapseTest, ARefusalReleasesTheLatchAfterItsTimeLikeAnyToggle) {
    start();
    placeItems(1450, 1400);
    leftClick();
    placeItems(1386, 1400);

    leftClick();
    EXPECT_FALSE(isCollapsed());
    passLatch();
    leftClick();
    EXPECT_TRUE(isCollapsed());
}

// Expanding.

TEST_F(CollapseTest, ExpandingDoesEverythingInItsOrder) {
    startWithOpenRow();
    optionClick();

    EXPECT_THAT(without(takeJournal(), listPrefixes()),
                ElementsAre("PelistraV3.Control.toolTip = " + std::string(controlToolTip),
                            "globalClicks.remove", "panel.orderOut", "symbol chevron.down",
                            "PelistraV3.Control.image = chevron.down", "end of every 2",
                            "drawn image", "PelistraV3.Divider.image = drawn",
                            "symbol chevron.right", "PelistraV3.Control.image = chevron.right",
                            "PelistraV3.Divider.length = 14", "log info: Expanded hidden section"));
}

TEST_F(CollapseTest, ExpandingGivesBackTheExpandedLook) {
    startCollapsed();
    optionClick();

    EXPECT_EQ(divider().length, 14);
    EXPECT_EQ(imageName(divider().button->image), "drawn");
    EXPECT_EQ(arrow(), "chevron.right");
    EXPECT_EQ(control().button->image->accessibilityDescription, "隐藏左侧图标");
    EXPECT_TRUE(control().button->image->isTemplate);
    EXPECT_THAT(logged(), ElementsAre("info: Expanded hidden section"));
}

TEST_F(CollapseTest, ExpandingACollapsedSectionMakesTheSecondRowIfThereIsNoneYet) {
    startCollapsed();
    ASSERT_THAT(fake_.panels.made, IsEmpty());
    optionClick();

    EXPECT_EQ(fake_.panels.made.size(), 1U);
    EXPECT_FALSE(rowIsOpen());
}

TEST_F(CollapseTest, ExpandingAnExpandedSectionMakesNoSecondRow) {
    start();
    optionClick();

    EXPECT_THAT(fake_.panels.made, IsEmpty());
}

TEST_F(CollapseTest, ExpandingWithoutButtonsStillShrinksTheDivider) {
    startCollapsed();
    control().button->action = nullptr;
    fake_.application.event =
        Event{.type = EventType::LeftMouseUp, .modifierFlags = modifierOption};
    control().button = nullptr;
    divider().button = nullptr;
    controller_->controlPressed();

    EXPECT_EQ(divider().length, 14);
}

TEST_F(CollapseTest, TheSectionCollapsesAgainAfterExpanding) {
    startCollapsed();
    optionClick();
    leftClick();

    EXPECT_EQ(divider().length, collapsedLength);
    EXPECT_EQ(fake_.mainQueue.runningTimers(), 1U);
}

} // namespace
} // namespace pelistra::testing
