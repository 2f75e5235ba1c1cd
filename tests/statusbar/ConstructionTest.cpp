#include "tests/statusbar/StatusBarFixture.h"

#include <algorithm>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr std::string_view controlPosition = "NSStatusItem Preferred Position PelistraV3.Control";
constexpr std::string_view controlVisible = "NSStatusItem Visible PelistraV3.Control";
constexpr std::string_view dividerPosition = "NSStatusItem Preferred Position PelistraV3.Divider";
constexpr std::string_view dividerVisible = "NSStatusItem Visible PelistraV3.Divider";

class ConstructionTest : public StatusBarFixture {
protected:
    // What was asked, without the preparations of the list of hidden icons.
    std::vector<std::string> madeJournal() {
        make();
        auto entries = takeJournal();
        const auto ready = std::ranges::find(entries, "preflightAccess");
        if (ready != entries.end()) {
            entries.erase(entries.begin(), ready + 1);
        }
        return entries;
    }

    const FakeUserDefaults::Value& stored(std::string_view key) {
        return fake_.defaults.values.find(key)->second;
    }
};

TEST_F(ConstructionTest, DoesEverythingInItsOrder) {
    const std::string toolTip = "PelistraV3.Control.toolTip = " + std::string(controlToolTip);

    EXPECT_THAT(
        madeJournal(),
        ElementsAre(
            "defaults[NSStatusItem Preferred Position PelistraV3.Control] = 0",
            "defaults[NSStatusItem Visible PelistraV3.Control] = true",
            "defaults[NSStatusItem Preferred Position PelistraV3.Divider] = 1",
            "defaults[NSStatusItem Visible PelistraV3.Divider] = true", "statusItem(withLength: 0)",
            "item 1.autosaveName = PelistraV3.Control", "statusItem(withLength: 0)",
            "item 2.autosaveName = PelistraV3.Divider", "PelistraV3.Control.isVisible = true",
            "PelistraV3.Divider.isVisible = true", "PelistraV3.Control.length = -2",
            "symbol chevron.right", "PelistraV3.Control.image = chevron.right",
            "PelistraV3.Control.action = set", "PelistraV3.Control.sendAction(on: 0x14)", toolTip,
            "PelistraV3.Divider.length = 14", "drawn image", "PelistraV3.Divider.image = drawn",
            "PelistraV3.Divider.action = none",
            "PelistraV3.Divider.toolTip = 按住 Command 拖动图标：放到此线左侧会被 Pelistra 折叠",
            // From here on, what expanding does.
            toolTip, "drawn image", "PelistraV3.Divider.image = drawn", "symbol chevron.right",
            "PelistraV3.Control.image = chevron.right", "PelistraV3.Divider.length = 14",
            "log info: Expanded hidden section",
            // And what remains.
            "screens.observe", "async"));
}

TEST_F(ConstructionTest, TheListOfHiddenIconsIsMadeBeforeAnythingElse) {
    make();
    const auto entries = takeJournal();

    const auto preflight = std::ranges::find(entries, "preflightAccess");
    const auto firstDefault = std::ranges::find_if(
        entries, [](const std::string& entry) { return entry.starts_with("defaults["); });
    ASSERT_NE(preflight, entries.end());
    EXPECT_LT(preflight, firstDefault);
}

TEST_F(ConstructionTest, TheSecondRowIsNotMadeYet) {
    make();

    EXPECT_THAT(fake_.panels.made, IsEmpty());
}

TEST_F(ConstructionTest, AFirstLaunchPutsTheDividerDirectlyLeftOfTheControl) {
    make();

    EXPECT_EQ(stored(controlPosition), FakeUserDefaults::Value(0.0));
    EXPECT_EQ(stored(dividerPosition), FakeUserDefaults::Value(1.0));
    EXPECT_EQ(stored(controlVisible), FakeUserDefaults::Value(true));
    EXPECT_EQ(stored(dividerVisible), FakeUserDefaults::Value(true));
}

TEST_F(ConstructionTest, ASecondLaunchLeavesThePositionsAndRewritesTheVisibility) {
    fake_.defaults.values[std::string(controlPosition)] = 220.0;
    fake_.defaults.values[std::string(dividerPosition)] = 245.5;
    fake_.defaults.values[std::string(controlVisible)] = false;
    fake_.defaults.values[std::string(dividerVisible)] = false;
    make();

    EXPECT_EQ(stored(controlPosition), FakeUserDefaults::Value(220.0));
    EXPECT_EQ(stored(dividerPosition), FakeUserDefaults::Value(245.5));
    EXPECT_EQ(stored(controlVisible), FakeUserDefaults::Value(true));
    EXPECT_EQ(stored(dividerVisible), FakeUserDefaults::Value(true));
}

TEST_F(ConstructionTest, AStoredPositionOfAnyTypeIsLeftAlone) {
    fake_.defaults.values[std::string(controlPosition)] = std::string("left");
    fake_.defaults.values[std::string(dividerPosition)] = false;
    make();

    EXPECT_EQ(stored(controlPosition), FakeUserDefaults::Value(std::string("left")));
    EXPECT_EQ(stored(dividerPosition), FakeUserDefaults::Value(false));
}

TEST_F(ConstructionTest, TheArrowAnswersToBothButtonsOnRelease) {
    make();

    EXPECT_EQ(control().button->mask, EventMask{0x14});
    EXPECT_TRUE(control().button->action != nullptr);
    EXPECT_EQ(control().button->toolTip, controlToolTip);
    EXPECT_EQ(arrow(), "chevron.right");
    EXPECT_EQ(control().button->image->accessibilityDescription, "隐藏左侧图标");
    EXPECT_TRUE(control().button->image->isTemplate);
}

TEST_F(ConstructionTest, TheDividerIsInert) {
    make();

    EXPECT_TRUE(divider().button->action == nullptr);
    EXPECT_EQ(divider().button->toolTip, "按住 Command 拖动图标：放到此线左侧会被 Pelistra 折叠");
    EXPECT_EQ(divider().button->image->size(), (Size{.width = 12, .height = 18}));
}

TEST_F(ConstructionTest, TheControlStaysSquareWhateverHappens) {
    startWithOpenRow();
    optionClick();

    EXPECT_EQ(control().length, StatusItem::squareLength);
    EXPECT_THAT(fake_.journal.entriesStartingWith("PelistraV3.Control.length"), IsEmpty());
}

TEST_F(ConstructionTest, ItemsWithoutButtonsAreTolerated) {
    fake_.statusBar.itemsWithoutButton = {0, 1};
    make();
    fake_.mainQueue.runUntilIdle();

    EXPECT_EQ(control().length, StatusItem::squareLength);
    EXPECT_EQ(divider().length, 14);
    EXPECT_THAT(fake_.journal.entriesStartingWith("PelistraV3.Control.image"), IsEmpty());
    EXPECT_THAT(fake_.journal.entriesStartingWith("PelistraV3.Divider.toolTip"), IsEmpty());
}

TEST_F(ConstructionTest, WithoutTheSymbolTheArrowHasNoPicture) {
    fake_.images.missingSymbols = {"chevron.right"};
    make();

    EXPECT_EQ(control().button->image, nullptr);
    EXPECT_EQ(control().button->toolTip, controlToolTip);
}

TEST_F(ConstructionTest, WritesNothingBeforeTheStartUpCheckButThatItExpanded) {
    make();

    EXPECT_THAT(logged(), ElementsAre("info: Expanded hidden section"));
}

TEST_F(ConstructionTest, LogsUnderItsOwnCategory) {
    make();

    ASSERT_FALSE(fake_.log.lines.empty());
    EXPECT_EQ(fake_.log.lines.back().subsystem, "com.pelistra.app");
    EXPECT_EQ(fake_.log.lines.back().category, "status-bar");
}

TEST_F(ConstructionTest, ItsEndTakesEverythingBack) {
    startCollapsed();
    controller_.reset();

    EXPECT_EQ(fake_.mainQueue.runningTimers(), 0U);
    EXPECT_EQ(fake_.screens.observers(), 0U);
    EXPECT_TRUE(fake_.statusBar.items[0]->removed);
    EXPECT_TRUE(fake_.statusBar.items[1]->removed);
}

TEST_F(ConstructionTest, NothingThatWaitsActsAfterItsEnd) {
    fake_.application.processArguments.emplace_back("--start-collapsed");
    make();
    const auto button = control().button;
    leftClick();
    controller_.reset();
    fake_.journal.clear();

    fake_.mainQueue.advance(Seconds(10));
    fake_.screens.announceChange();
    fake_.send({.type = EventType::LeftMouseUp}, *button);
    fake_.send({.type = EventType::RightMouseUp}, *button);
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(fake_.journal.entries(), IsEmpty());
    EXPECT_EQ(settingsShown_, 0);
}

} // namespace
} // namespace pelistra::testing
