#include "secondrow/SecondRowView.h"
#include "tests/secondrow/PanelFixture.h"

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SecondRowPanelPlacementTest : public PanelFixture {
protected:
    [[nodiscard]] double widthFor(std::size_t count) {
        store_->items.set(items(count));
        show();
        return panel().contentSize.width;
    }
    [[nodiscard]] ScreenRect frameUnder(const ScreenRect& button) {
        button_->frame = button;
        show();
        return panel().frame();
    }
    void useScreens(std::vector<Screen> screens) {
        fakes_.screens.mainScreen = screens.front();
        fakes_.screens.list = std::move(screens);
    }
};

TEST_F(SecondRowPanelPlacementTest, TheWidthFollowsTheNumberOfItemsWithinItsBounds) {
    EXPECT_EQ(widthFor(0), 280);
    EXPECT_EQ(widthFor(1), 280);
    EXPECT_EQ(widthFor(3), 280);
    EXPECT_EQ(widthFor(4), 320);
    EXPECT_EQ(widthFor(16), 896);
    EXPECT_EQ(widthFor(17), 920);
    EXPECT_EQ(widthFor(400), 920);
}

TEST_F(SecondRowPanelPlacementTest, TheHeightIsAlwaysTheSame) {
    for (const std::size_t count : {0U, 1U, 17U, 400U}) {
        (void)widthFor(count);
        EXPECT_EQ(panel().contentSize.height, 78);
    }
}

TEST_F(SecondRowPanelPlacementTest, TheUsableAreaWinsOverTheSmallestWidth) {
    useScreens({plainScreen(0, 200)});
    button_->frame = buttonAt(88);
    EXPECT_EQ(widthFor(0), 184);
    EXPECT_EQ(panel().frame().minX(), 8);
    EXPECT_EQ(widthFor(17), 184);
    useScreens({plainScreen(0, 296)});
    EXPECT_EQ(widthFor(0), 280);
    useScreens({plainScreen(0, 700)});
    EXPECT_EQ(widthFor(17), 684);
}

TEST_F(SecondRowPanelPlacementTest, TheVisibleFrameCountsNotTheWholeScreen) {
    Screen screen = plainScreen(0, 1512);
    screen.visibleFrame = makeRect<ScreenSpace>(100, 0, 400, 950);
    useScreens({screen});
    EXPECT_EQ(widthFor(17), 384);
    EXPECT_EQ(panel().frame().minX(), 108);
    EXPECT_EQ(panel().frame().maxX(), 492);
}

TEST_F(SecondRowPanelPlacementTest, LiesCentredSixPointsBelowTheButton) {
    const auto frame = frameUnder(buttonAt(744));
    EXPECT_EQ(frame.midX(), 756);
    EXPECT_EQ(frame.maxY(), barBottom - 6);
    EXPECT_EQ(frame.minY(), barBottom - 84);
}

TEST_F(SecondRowPanelPlacementTest, StopsEightPointsBeforeTheSidesOfTheVisibleFrame) {
    EXPECT_EQ(frameUnder(buttonAt(1480)).maxX(), 1504);
    EXPECT_EQ(frameUnder(buttonAt(10)).minX(), 8);
    // One point further inside, it is free.
    EXPECT_EQ(frameUnder(buttonAt(1504 - 140 - 12)).maxX(), 1504);
    EXPECT_EQ(frameUnder(buttonAt(1504 - 140 - 13)).maxX(), 1503);
}

TEST_F(SecondRowPanelPlacementTest, IsHeldFourPointsAboveTheBottomOfTheVisibleFrame) {
    Screen screen = plainScreen(0, 1512);
    screen.visibleFrame = makeRect<ScreenSpace>(0, 900, 1512, 58);
    useScreens({screen});
    EXPECT_EQ(frameUnder(buttonAt(744)).minY(), 904);
    screen.visibleFrame = makeRect<ScreenSpace>(0, 958 - 88, 1512, 88);
    useScreens({screen});
    EXPECT_EQ(frameUnder(buttonAt(744)).minY(), 874);
}

TEST_F(SecondRowPanelPlacementTest, TheTopOfTheVisibleFrameDoesNotHoldIt) {
    Screen screen = plainScreen(0, 1512);
    screen.visibleFrame = makeRect<ScreenSpace>(0, 0, 1512, 500);
    useScreens({screen});
    EXPECT_EQ(frameUnder(buttonAt(744)).minY(), barBottom - 84);
}

TEST_F(SecondRowPanelPlacementTest, OriginsAreRoundedToWholePointsHalvesAwayFromZero) {
    // A button of 25 points puts the panel's left edge on a half.
    const auto origin = [this](double x, double y) {
        button_->frame = makeRect<ScreenSpace>(x, y, 25, 24);
        show();
        return panel().frame().origin;
    };
    EXPECT_EQ(origin(744, 900.5), (ScreenPoint{.x = 617, .y = 817}));
    EXPECT_EQ(origin(744, 900.25), (ScreenPoint{.x = 617, .y = 816}));
    useScreens({plainScreen(-1512, 1512)});
    EXPECT_EQ(origin(-744, 900), (ScreenPoint{.x = -872, .y = 816}));
    Screen below = plainScreen(0, 1512);
    below.frame = makeRect<ScreenSpace>(0, -982, 1512, 982);
    below.visibleFrame = below.frame;
    useScreens({below});
    EXPECT_EQ(origin(744, -24.5), (ScreenPoint{.x = 617, .y = -109}));
}

TEST_F(SecondRowPanelPlacementTest, OpensOnTheScreenThatHoldsTheButtonsCentre) {
    useScreens({plainScreen(0, 1512), plainScreen(1512, 2560)});
    const auto frame = frameUnder(buttonAt(1520));
    EXPECT_EQ(frame.minX(), 1520);
    // The centre decides, not the edges; the left edge of a screen belongs to it.
    EXPECT_EQ(frameUnder(buttonAt(1500)).minX(), 1520);
    EXPECT_EQ(frameUnder(buttonAt(1499)).maxX(), 1504);
}

TEST_F(SecondRowPanelPlacementTest, OverlappingScreensGoByTheirOrder) {
    useScreens({plainScreen(0, 1512), plainScreen(0, 2560)});
    EXPECT_EQ(frameUnder(buttonAt(1480)).maxX(), 1504);
    useScreens({plainScreen(0, 2560), plainScreen(0, 1512)});
    EXPECT_EQ(frameUnder(buttonAt(1480)).midX(), 1492);
}

TEST_F(SecondRowPanelPlacementTest, AButtonOutsideOfEveryScreenGoesByTheMainOne) {
    useScreens({plainScreen(0, 1512), plainScreen(1512, 2560)});
    fakes_.screens.mainScreen = plainScreen(1512, 2560);
    EXPECT_EQ(frameUnder(buttonAt(5000)).maxX(), 1512 + 2560 - 8);
}

TEST_F(SecondRowPanelPlacementTest, WithoutAnyScreenItIsNotShown) {
    fakes_.screens.list.clear();
    fakes_.screens.mainScreen = std::nullopt;
    fakes_.journal.clear();
    show();
    EXPECT_THAT(fakes_.journal.entries(), IsEmpty());
    EXPECT_FALSE(panel().visible);
}

TEST_F(SecondRowPanelPlacementTest, TheListMayGrowWithoutResizingTheOpenPanel) {
    (void)widthFor(4);
    store_->items.set(items(9));
    drainQueue();
    EXPECT_EQ(panel().contentSize.width, 320);
    show();
    EXPECT_EQ(panel().contentSize.width, 560);
}

TEST_F(SecondRowPanelPlacementTest, AChangeOfScreensPlacesTheOpenPanelAnewOneTurnLater) {
    show();
    store_->items.set(items(9));
    button_->frame = buttonAt(300);
    fakes_.journal.clear();
    fakes_.screens.announceChange();
    EXPECT_THAT(fakes_.journal.entries(), ElementsAre("async"));
    fakes_.mainQueue.runTurn();
    EXPECT_THAT(fakes_.journal.entries(), ElementsAre("async", "panel.contentSize = 560 x 78",
                                                      "panel.frameOrigin = 32, 874"));
}

TEST_F(SecondRowPanelPlacementTest, AChangeOfScreensTellsNobodyAndKeepsTheMonitor) {
    noteVisibility();
    show();
    fakes_.journal.clear();
    fakes_.screens.announceChange();
    drainQueue();
    EXPECT_THAT(fakes_.journal.entriesStartingWith("told"), IsEmpty());
    EXPECT_THAT(fakes_.journal.entriesStartingWith("globalClicks"), IsEmpty());
}

TEST_F(SecondRowPanelPlacementTest, AChangeOfScreensWhileHiddenDoesNothing) {
    show();
    controller_->close();
    fakes_.journal.clear();
    fakes_.screens.announceChange();
    drainQueue();
    EXPECT_THAT(fakes_.journal.entriesStartingWith("panel"), IsEmpty());
}

TEST_F(SecondRowPanelPlacementTest, AChangeOfScreensBeforeAClosingComesToNothing) {
    show();
    fakes_.screens.announceChange();
    controller_->close();
    fakes_.journal.clear();
    drainQueue();
    EXPECT_THAT(fakes_.journal.entriesStartingWith("panel"), IsEmpty());
}

TEST_F(SecondRowPanelPlacementTest, AChangeOfScreensWithTheAnchorGoneDoesNothing) {
    show();
    button_.reset();
    fakes_.journal.clear();
    fakes_.screens.announceChange();
    drainQueue();
    EXPECT_THAT(fakes_.journal.entriesStartingWith("panel"), IsEmpty());
    EXPECT_TRUE(panel().visible);
}

TEST_F(SecondRowPanelPlacementTest, AFailedPlacingAfterAChangeLeavesThePanelWhereItWas) {
    show();
    const auto before = panel().frame();
    fakes_.screens.list.clear();
    fakes_.screens.mainScreen = std::nullopt;
    fakes_.screens.announceChange();
    drainQueue();
    EXPECT_EQ(panel().frame(), before);
    EXPECT_TRUE(panel().visible);
}

TEST_F(SecondRowPanelPlacementTest, ADisplayThatGoesWhileTheRowIsOpenBringsItToTheMainScreen) {
    useScreens({plainScreen(0, 1512), plainScreen(1512, 2560)});
    EXPECT_GT(frameUnder(buttonAt(3000)).minX(), 1512);
    useScreens({plainScreen(0, 1512)});
    fakes_.screens.announceChange();
    drainQueue();
    EXPECT_EQ(panel().frame().maxX(), 1504);
    EXPECT_TRUE(panel().visible);
}

} // namespace
} // namespace pelistra::testing
