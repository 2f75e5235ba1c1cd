#include "secondrow/SecondRowPanelController.h"

#include "tests/secondrow/PanelFixture.h"

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using namespace ui;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SecondRowPanelControllerTest : public PanelFixture {
protected:
    // Presses the right mouse button on the first cell.
    void rightClickFirstCell() {
        const auto capture = all<Represented>(body()).front();
        capture.value->makeView(fakes_.application)
            ->rightMouseDown({.type = EventType::RightMouseDown});
    }
    void leftClickFirstCell() {
        const auto buttons = all<Button>(body());
        buttons.front().action();
    }
    // Makes the application of every item of items() one that opens when asked to.
    void letApplicationRun() { fakes_.runningApplications.running[5000] = {}; }
};

TEST_F(SecondRowPanelControllerTest, BuildsAndConfiguresThePanelInOrder) {
    controller_.reset();
    fakes_.journal.clear();
    controller_ = std::make_unique<SecondRowPanelController>(fakes_.platform, store_);
    EXPECT_THAT(fakes_.journal.entries(), ElementsAre("panel(420 x 78, style 128)", "panel.content",
                                                      "panel.orderOut", "screens.observe"));
    EXPECT_EQ(fakes_.panels.made.back()->configuration,
              (PanelConfiguration{.contentSize = {.width = 420, .height = 78},
                                  .styleMask = 128,
                                  .title = "Pelistra 第二行",
                                  .accessibilityLabel = "Pelistra 第二行溢出栏",
                                  .level = 25,
                                  .isFloatingPanel = true,
                                  .hidesOnDeactivate = false,
                                  .collectionBehavior = 329,
                                  .isOpaque = false,
                                  .background = PanelBackground::Clear,
                                  .hasShadow = true,
                                  .animationBehavior = AnimationBehavior{4},
                                  .isReleasedWhenClosed = false}));
}

TEST_F(SecondRowPanelControllerTest, StartsHiddenWithoutMonitorAndCallbacks) {
    EXPECT_FALSE(controller_->panel().isVisible());
    EXPECT_EQ(fakes_.globalClicks.monitors(), 0);
    EXPECT_FALSE(controller_->onArrange);
    EXPECT_FALSE(controller_->onOriginalMenu);
    EXPECT_FALSE(controller_->onVisibilityChanged);
}

TEST_F(SecondRowPanelControllerTest, ShowsInOrder) {
    noteVisibility();
    fakes_.journal.clear();
    show();
    EXPECT_TRUE(controller_->panel().isVisible());
    EXPECT_THAT(fakes_.journal.entries(),
                ElementsAre("panel.contentSize = 280 x 78", "panel.frameOrigin = 616, 874",
                            "panel.orderFrontRegardless", "told true", "globalClicks.add(10)"));
}

TEST_F(SecondRowPanelControllerTest, ARepeatedShowPlacesAnewTellsAgainAndReplacesTheMonitor) {
    noteVisibility();
    show();
    fakes_.journal.clear();
    button_->frame = buttonAt(844);
    show();
    EXPECT_THAT(fakes_.journal.entries(),
                ElementsAre("panel.contentSize = 280 x 78", "panel.frameOrigin = 716, 874",
                            "panel.orderFrontRegardless", "told true", "globalClicks.remove",
                            "globalClicks.add(10)"));
    EXPECT_EQ(fakes_.globalClicks.monitors(), 1);
}

TEST_F(SecondRowPanelControllerTest, ClosesInOrder) {
    noteVisibility();
    show();
    fakes_.journal.clear();
    controller_->close();
    EXPECT_FALSE(controller_->panel().isVisible());
    EXPECT_THAT(fakes_.journal.entries(),
                ElementsAre("globalClicks.remove", "panel.orderOut", "told false"));
}

TEST_F(SecondRowPanelControllerTest, ClosingAHiddenPanelDoesNothing) {
    noteVisibility();
    fakes_.journal.clear();
    controller_->close();
    show();
    controller_->close();
    fakes_.journal.clear();
    controller_->close();
    EXPECT_THAT(fakes_.journal.entries(), IsEmpty());
}

TEST_F(SecondRowPanelControllerTest, EmptyCallbacksAreNotCalled) {
    store_->items.set(items(1));
    letApplicationRun();
    show();
    all<Button>(body()).back().action();
    rightClickFirstCell();
    EXPECT_FALSE(controller_->panel().isVisible());
}

TEST_F(SecondRowPanelControllerTest, AButtonWithoutAPlaceShowsNothing) {
    noteVisibility();
    const auto none = makeRect<ScreenSpace>(744, barBottom, 0, 24);
    const auto flat = makeRect<ScreenSpace>(744, barBottom, 24, 0);
    for (const std::optional<ScreenRect>& frame :
         {std::optional<ScreenRect>(), std::optional(none), std::optional(flat)}) {
        button_->frame = frame;
        fakes_.journal.clear();
        show();
        EXPECT_THAT(fakes_.journal.entries(), IsEmpty());
    }
    EXPECT_FALSE(controller_->panel().isVisible());
}

TEST_F(SecondRowPanelControllerTest, TheSmallestButtonHasAPlace) {
    button_->frame = makeRect<ScreenSpace>(744, barBottom, 0.5, 0.5);
    show();
    EXPECT_TRUE(controller_->panel().isVisible());
}

TEST_F(SecondRowPanelControllerTest, NoButtonAtAllShowsNothing) {
    controller_->show(nullptr);
    EXPECT_FALSE(controller_->panel().isVisible());
}

TEST_F(SecondRowPanelControllerTest, AFailedShowWhileShownChangesNothingButTheAnchor) {
    show();
    noteVisibility();
    const auto other = makeButton(buttonAt(200));
    other->frame = std::nullopt;
    fakes_.journal.clear();
    controller_->show(other);
    EXPECT_THAT(fakes_.journal.entries(), IsEmpty());
    EXPECT_TRUE(controller_->panel().isVisible());
    EXPECT_EQ(fakes_.globalClicks.monitors(), 1);

    // The next change of screens is for the new anchor.
    other->frame = buttonAt(200);
    fakes_.screens.announceChange();
    drainQueue();
    EXPECT_EQ(panel().frame().midX(), 212);
}

TEST_F(SecondRowPanelControllerTest, AClickElsewhereClosesAfterTheEventWasHandled) {
    for (const auto type : {EventType::LeftMouseDown, EventType::RightMouseDown}) {
        show();
        noteVisibility();
        fakes_.journal.clear();
        fakes_.globalClicks.clickElsewhere(type);
        EXPECT_TRUE(controller_->panel().isVisible());
        EXPECT_THAT(fakes_.journal.entries(), ElementsAre("async"));
        fakes_.mainQueue.runTurn();
        EXPECT_FALSE(controller_->panel().isVisible());
        EXPECT_THAT(fakes_.journal.entries(),
                    ElementsAre("async", "globalClicks.remove", "panel.orderOut", "told false"));
    }
}

TEST_F(SecondRowPanelControllerTest, OtherEventsElsewhereDoNotCloseIt) {
    show();
    fakes_.globalClicks.clickElsewhere(EventType::LeftMouseUp);
    fakes_.globalClicks.clickElsewhere(EventType::RightMouseUp);
    drainQueue();
    EXPECT_TRUE(controller_->panel().isVisible());
}

TEST_F(SecondRowPanelControllerTest, TwoClicksBeforeTheTurnCloseItOnce) {
    show();
    noteVisibility();
    fakes_.journal.clear();
    fakes_.globalClicks.clickElsewhere(EventType::LeftMouseDown);
    fakes_.globalClicks.clickElsewhere(EventType::LeftMouseDown);
    drainQueue();
    EXPECT_THAT(fakes_.journal.entriesStartingWith("told"), ElementsAre("told false"));
}

TEST_F(SecondRowPanelControllerTest, NothingWatchesClicksWhileItIsHidden) {
    show();
    controller_->close();
    EXPECT_EQ(fakes_.globalClicks.monitors(), 0);
    fakes_.globalClicks.clickElsewhere(EventType::LeftMouseDown);
    EXPECT_EQ(fakes_.mainQueue.waitingBlocks(), 0);
}

TEST_F(SecondRowPanelControllerTest, WithoutAMonitorItShowsAndClosesAllTheSame) {
    fakes_.globalClicks.refuses = true;
    noteVisibility();
    show();
    EXPECT_TRUE(controller_->panel().isVisible());
    fakes_.journal.clear();
    controller_->close();
    EXPECT_THAT(fakes_.journal.entries(), ElementsAre("panel.orderOut", "told false"));
}

TEST_F(SecondRowPanelControllerTest, ALeftClickThatOpensTheApplicationCloses) {
    store_->items.set(items(1));
    letApplicationRun();
    noteVisibility();
    show();
    fakes_.journal.clear();
    leftClickFirstCell();
    EXPECT_FALSE(controller_->panel().isVisible());
    EXPECT_TRUE(fakes_.journal.contains("activate 5000 1"));
    EXPECT_THAT(fakes_.journal.entriesStartingWith("told"), ElementsAre("told false"));
}

TEST_F(SecondRowPanelControllerTest, ALeftClickThatFailsLeavesItOpenWithAMessage) {
    store_->items.set(items(1));
    noteVisibility();
    show();
    fakes_.journal.clear();
    leftClickFirstCell();
    EXPECT_TRUE(controller_->panel().isVisible());
    EXPECT_EQ(store_->message.get(), "该菜单栏项目已经退出。");
    EXPECT_THAT(fakes_.journal.entriesStartingWith("told"), IsEmpty());
}

TEST_F(SecondRowPanelControllerTest, ARightClickClosesBeforeItAsksForTheMenu) {
    store_->items.set({item(42)});
    noteVisibility();
    controller_->onOriginalMenu = [this](const OverflowItem& item) {
        fakes_.journal.note("menu " + std::to_string(item.id));
    };
    show();
    fakes_.journal.clear();
    rightClickFirstCell();
    EXPECT_THAT(fakes_.journal.entries(),
                ElementsAre("globalClicks.remove", "panel.orderOut", "told false", "menu 42"));
}

TEST_F(SecondRowPanelControllerTest, ARightClickWhileHiddenOnlyAsksForTheMenu) {
    store_->items.set({item(42)});
    noteVisibility();
    controller_->onOriginalMenu = [this](const OverflowItem&) { fakes_.journal.note("menu"); };
    fakes_.journal.clear();
    rightClickFirstCell();
    EXPECT_THAT(fakes_.journal.entries(), ElementsAre("menu"));
}

TEST_F(SecondRowPanelControllerTest, TheArrangeButtonTellsAndLeavesThePanelOpen) {
    int arrangements = 0;
    controller_->onArrange = [&arrangements] { ++arrangements; };
    show();
    all<Button>(body()).back().action();
    EXPECT_EQ(arrangements, 1);
    EXPECT_TRUE(controller_->panel().isVisible());
}

TEST_F(SecondRowPanelControllerTest, TheOwnerMayCloseItWhileBeingAskedToArrange) {
    controller_->onArrange = [this] { controller_->close(); };
    show();
    all<Button>(body()).back().action();
    EXPECT_FALSE(controller_->panel().isVisible());
}

TEST_F(SecondRowPanelControllerTest, ACallbackMayReplaceItself) {
    controller_->onVisibilityChanged = [this](bool) { noteVisibility(); };
    show();
    fakes_.journal.clear();
    controller_->close();
    EXPECT_TRUE(fakes_.journal.contains("told false"));
}

TEST_F(SecondRowPanelControllerTest, TheOwnerMayLetGoOfItWhileBeingTold) {
    store_->items.set(items(1));
    bool menuAskedFor = false;
    controller_->onOriginalMenu = [&](const OverflowItem&) { menuAskedFor = true; };
    controller_->onVisibilityChanged = [this](bool visible) {
        if (!visible) {
            controller_.reset();
        }
    };
    show();
    rightClickFirstCell();
    EXPECT_EQ(controller_, nullptr);
    EXPECT_FALSE(menuAskedFor);
}

TEST_F(SecondRowPanelControllerTest, GoingAwayEndsMonitorObserverAndPanelWithoutTelling) {
    noteVisibility();
    show();
    fakes_.journal.clear();
    controller_.reset();
    EXPECT_EQ(fakes_.globalClicks.monitors(), 0);
    EXPECT_EQ(fakes_.screens.observers(), 0);
    EXPECT_TRUE(panel().destroyed);
    EXPECT_THAT(fakes_.journal.entriesStartingWith("told"), IsEmpty());
}

TEST_F(SecondRowPanelControllerTest, NothingThatItGaveAwayKeepsItAliveOrActsLater) {
    store_->items.set(items(1));
    letApplicationRun();
    show();
    const auto content = panel().content;
    const View oldBody = content->body();
    fakes_.globalClicks.clickElsewhere(EventType::LeftMouseDown);
    fakes_.screens.announceChange();
    controller_.reset();
    fakes_.journal.clear();

    drainQueue();
    for (const auto& button : all<Button>(oldBody)) {
        button.action();
    }
    all<Represented>(oldBody).front().value->makeView(fakes_.application)->rightMouseDown({});
    EXPECT_THAT(fakes_.journal.entries(), IsEmpty());
}

TEST_F(SecondRowPanelControllerTest, HoldsTheStoreForAsLongAsItLives) {
    const std::weak_ptr<OverflowStore> store = store_;
    store_.reset();
    EXPECT_FALSE(store.expired());
    controller_.reset();
    EXPECT_TRUE(store.expired());
}

TEST_F(SecondRowPanelControllerTest, ItsContentFollowsTheStore) {
    int announcements = 0;
    const auto token = panel().content->observe([&] { ++announcements; });
    store_->items.set(items(2));
    EXPECT_EQ(announcements, 1);
    EXPECT_EQ(all<Represented>(body()).size(), 2);
}

} // namespace
} // namespace pelistra::testing
