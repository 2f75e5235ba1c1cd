#include "tests/statusbar/StatusBarFixture.h"

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using ControlClickTest = StatusBarFixture;

TEST_F(ControlClickTest, WithoutACurrentEventNothingHappens) {
    start();
    fake_.application.event.reset();
    controller_->controlPressed();

    EXPECT_THAT(takeJournal(), IsEmpty());
}

TEST_F(ControlClickTest, ALeftClickCollapsesAnExpandedSection) {
    start();
    leftClick();

    EXPECT_TRUE(isCollapsed());
}

TEST_F(ControlClickTest, ALeftClickOnACollapsedSectionOpensTheSecondRow) {
    startCollapsed();
    leftClick();

    EXPECT_TRUE(rowIsOpen());
    EXPECT_TRUE(isCollapsed());
}

TEST_F(ControlClickTest, ALeftClickOnAnOpenSecondRowClosesItAndDoesNotExpand) {
    startWithOpenRow();
    leftClick();

    EXPECT_FALSE(rowIsOpen());
    EXPECT_TRUE(isCollapsed());
}

TEST_F(ControlClickTest, ARightClickOpensTheSettingsAndNothingElse) {
    start();
    rightClickArrow();

    EXPECT_THAT(takeJournal(), ElementsAre("showSettings"));
}

TEST_F(ControlClickTest, ARightClickWithOptionOpensTheSettingsToo) {
    startCollapsed();
    fake_.send({.type = EventType::RightMouseUp, .modifierFlags = modifierOption},
               *control().button);

    EXPECT_THAT(takeJournal(), ElementsAre("showSettings"));
    EXPECT_TRUE(isCollapsed());
}

TEST_F(ControlClickTest, ARightClickWhileCollapsedLeavesTheRowAndTheState) {
    startWithOpenRow();
    rightClickArrow();

    EXPECT_THAT(takeJournal(), ElementsAre("showSettings"));
    EXPECT_TRUE(rowIsOpen());
    EXPECT_TRUE(isCollapsed());
}

TEST_F(ControlClickTest, ARightClickIsNotHeldBackByTheLatch) {
    start();
    leftClick();
    rightClickArrow();

    EXPECT_EQ(settingsShown_, 1);
}

TEST_F(ControlClickTest, AnOptionClickWhileCollapsedExpandsAndClosesTheRow) {
    startWithOpenRow();
    optionClick();

    EXPECT_FALSE(isCollapsed());
    EXPECT_FALSE(rowIsOpen());
    EXPECT_EQ(arrow(), "chevron.right");
}

TEST_F(ControlClickTest, AnOptionClickWithOtherModifiersCountsAsOne) {
    startCollapsed();
    constexpr std::uint64_t modifierCommand = 0x100000;
    leftClick(modifierOption | modifierCommand);

    EXPECT_FALSE(isCollapsed());
}

TEST_F(ControlClickTest, OtherModifiersDoNotExpand) {
    startCollapsed();
    constexpr std::uint64_t allButOption = ~modifierOption;
    leftClick(allButOption);

    EXPECT_TRUE(isCollapsed());
    EXPECT_TRUE(rowIsOpen());
}

TEST_F(ControlClickTest, AnOptionClickWhileExpandedOnlyAppliesTheExpandedLookAgain) {
    start();
    optionClick();

    EXPECT_THAT(takeJournal(),
                ElementsAre("PelistraV3.Control.toolTip = " + std::string(controlToolTip),
                            "drawn image", "PelistraV3.Divider.image = drawn",
                            "symbol chevron.right", "PelistraV3.Control.image = chevron.right",
                            "PelistraV3.Divider.length = 14", "log info: Expanded hidden section"));
}

TEST_F(ControlClickTest, AnOptionClickIsNotHeldBackByTheLatch) {
    start();
    leftClick();
    optionClick();

    EXPECT_FALSE(isCollapsed());
}

// The latch.

TEST_F(ControlClickTest, ASecondClickWithinTheLatchTimeIsIgnored) {
    start();
    leftClick();
    takeJournal();

    passTime(0.249);
    leftClick();
    EXPECT_THAT(takeJournal(), IsEmpty());
    EXPECT_FALSE(rowIsOpen());
}

TEST_F(ControlClickTest, AClickAfterTheLatchTimeCounts) {
    start();
    leftClick();
    passTime(0.25);
    leftClick();

    EXPECT_TRUE(rowIsOpen());
}

TEST_F(ControlClickTest, AnIgnoredClickDoesNotLengthenTheLatch) {
    start();
    leftClick();
    passTime(0.2);
    leftClick();
    passTime(0.05);
    leftClick();

    EXPECT_TRUE(rowIsOpen());
}

TEST_F(ControlClickTest, OpeningTheRowSetsTheLatchToo) {
    startCollapsed();
    leftClick();
    leftClick();
    EXPECT_TRUE(rowIsOpen());

    passLatch();
    leftClick();
    EXPECT_FALSE(rowIsOpen());
}

TEST_F(ControlClickTest, WithoutAButtonATogglePutsTheLatchBackAtOnce) {
    startCollapsed();
    const auto button = control().button;
    control().button = nullptr;
    fake_.send({.type = EventType::LeftMouseUp}, *button);
    EXPECT_THAT(takeJournal(), IsEmpty());
    EXPECT_FALSE(rowIsOpen());

    control().button = button;
    leftClick();
    EXPECT_TRUE(rowIsOpen());
}

} // namespace
} // namespace pelistra::testing
