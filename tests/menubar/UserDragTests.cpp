#include "tests/menubar/BarFixture.h"

#include <csignal>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;

const UserInput::Modifiers super{keys::super};
const UserInput::Modifiers altShift{keys::alt, keys::shift};
constexpr std::uint32_t capsLock = 0xffe5;
constexpr std::uint32_t numLock = 0xff7f;

class UserDragTests : public BarFixture {
protected:
    void SetUp() override {
        startBar();
        c_ = &dockNamed("c");
        b_ = &dockNamed("b");
        a_ = &dockNamed("a");
        ASSERT_THAT(names(), ElementsAre("a", "b", "c"));
    }

    [[nodiscard]] RootPoint middleOf(const TrayClient& client) { return centre(frameOf(client)); }

    TrayClient* a_ = nullptr;
    TrayClient* b_ = nullptr;
    TrayClient* c_ = nullptr;
};

TEST_F(UserDragTests, SuperDragMovesAnItem) {
    user_.drag(middleOf(*a_), middleOf(*c_), super);
    EXPECT_TRUE(comesToBe({"b", "c", "a"}));
    EXPECT_EQ(frameOf(*a_).right(), screenWidth);
}

TEST_F(UserDragTests, AltShiftDragMovesAnItem) {
    user_.drag(middleOf(*c_), middleOf(*a_), altShift);
    EXPECT_TRUE(comesToBe({"c", "a", "b"}));
}

TEST_F(UserDragTests, LocksDoNotMatter) {
    for (const std::uint32_t lock : {capsLock, numLock}) {
        user_.tapKey(lock);
        user_.drag(middleOf(*a_), middleOf(*c_), super);
        EXPECT_TRUE(comesToBe({"b", "c", "a"}));
        user_.drag(middleOf(*a_), middleOf(*b_), super);
        EXPECT_TRUE(comesToBe({"a", "b", "c"}));
        user_.tapKey(lock);
    }
}

TEST_F(UserDragTests, APlainDragIsTheClientsOwn) {
    user_.drag(middleOf(*a_), middleOf(*c_), {});
    dockNamed("new");
    EXPECT_THAT(names(), ElementsAre("new", "a", "b", "c"));
}

TEST_F(UserDragTests, TheDraggedItemFollowsThePointerAndTheOthersMakeRoom) {
    const RootPoint from = middleOf(*a_);
    const RootPoint to{.x = from.x + 40, .y = from.y};
    user_.beginDrag(from, to, super);
    EXPECT_TRUE(eventually([&] { return frameOf(*a_).midX() == to.x; }));
    EXPECT_TRUE(eventually([&] { return frameOf(*b_).x == screenWidth - 3 * barHeight; }));
    user_.endDrag(super);
    EXPECT_TRUE(comesToBe({"b", "a", "c"}));
    EXPECT_TRUE(eventually([&] { return frameOf(*a_).x == screenWidth - 2 * barHeight; }));
}

TEST_F(UserDragTests, EscapePutsItBack) {
    user_.beginDrag(middleOf(*a_), middleOf(*c_), super);
    ASSERT_TRUE(eventually([&] { return frameOf(*b_).x == screenWidth - 3 * barHeight; }));
    user_.tapKey(keys::escape);
    EXPECT_TRUE(eventually([&] { return frameOf(*a_).x == screenWidth - 3 * barHeight; }));
    user_.endDrag(super);
    dockNamed("new");
    EXPECT_THAT(names(), ElementsAre("new", "a", "b", "c"));
}

TEST_F(UserDragTests, ADragThatBeginsBeforeTheEndOfTheLastWasHandledIsWhole) {
    const RootPoint middle = middleOf(*b_);
    const RootPoint right = middleOf(*c_);
    bar().process().signal(SIGSTOP);
    user_.drag(middleOf(*a_), right, super);
    // What the user sees there is still "b".
    user_.beginDrag(middle, {.x = middle.x + 4, .y = middle.y}, super);
    bar().process().signal(SIGCONT);
    ASSERT_TRUE(eventually([&] { return frameOf(*a_).right() == screenWidth; }));
    user_.moveTo(right);
    user_.endDrag(super);
    EXPECT_TRUE(comesToBe({"c", "a", "b"}));
    EXPECT_TRUE(eventually([&] { return frameOf(*b_).right() == screenWidth; }));
}

TEST_F(UserDragTests, AClickWithTheModifierMovesNothing) {
    user_.click(middleOf(*a_), UserInput::Button::Left, super);
    dockNamed("new");
    EXPECT_THAT(names(), ElementsAre("new", "a", "b", "c"));
}

TEST_F(UserDragTests, FarAwayTheItemStaysInTheBar) {
    user_.drag(middleOf(*c_), {.x = 3, .y = 400}, super);
    EXPECT_TRUE(comesToBe({"c", "a", "b"}));
    EXPECT_TRUE(eventually([&] { return frameOf(*c_).x == screenWidth - 3 * barHeight; }));
}

TEST_F(UserDragTests, AnItemThatDiesInTheHandEndsTheDrag) {
    user_.beginDrag(middleOf(*a_), middleOf(*b_), super);
    a_->die();
    EXPECT_TRUE(comesToBe({"b", "c"}));
    user_.endDrag(super);
    user_.drag(middleOf(*b_), middleOf(*c_), super);
    EXPECT_TRUE(comesToBe({"c", "b"}));
}

TEST_F(UserDragTests, AnItemThatComesDuringADragDoesNoHarm) {
    user_.beginDrag(middleOf(*a_), middleOf(*c_), super);
    dockNamed("new");
    user_.endDrag(super);
    EXPECT_TRUE(comesToBe({"new", "b", "c", "a"}));
}

TEST_F(UserDragTests, TheNewOrderOutlivesTheBar) {
    user_.drag(middleOf(*a_), middleOf(*c_), super);
    ASSERT_TRUE(comesToBe({"b", "c", "a"}));
    stopBar(SIGKILL);
    startBar();
    for (TrayClient* client : {a_, b_, c_}) {
        ASSERT_TRUE(client->requestDock());
    }
    EXPECT_TRUE(comesToBe({"b", "c", "a"}));
}

TEST_F(UserDragTests, ItemsThatAskedForAPositionAreToldTheirNewOne) {
    TrayClient& control = dock({.name = "control", .preferredPosition = 0});
    TrayClient& divider = dock({.name = "divider", .preferredPosition = 1});
    ASSERT_THAT(names(), ElementsAre("a", "b", "c", "divider", "control"));
    EXPECT_EQ(positionTold(control), std::nullopt);
    user_.drag(middleOf(*c_), middleOf(control), super);
    EXPECT_TRUE(eventually([&] { return positionTold(control) == 1U; }));
    EXPECT_TRUE(eventually([&] { return positionTold(divider) == 2U; }));
    EXPECT_EQ(positionTold(*a_), std::nullopt);
    user_.drag(middleOf(divider), middleOf(*a_), super);
    EXPECT_TRUE(eventually([&] { return positionTold(divider) == 4U; }));
    EXPECT_THAT(names(), ElementsAre("divider", "a", "b", "control", "c"));
}

TEST_F(UserDragTests, ItemsCanBeDraggedAcrossTheDivider) {
    TrayClient& divider = dock({.name = "divider", .preferredPosition = 0});
    divider.askForWidth(14);
    EXPECT_TRUE(eventually([&] { return frameOf(divider).width == 14; }));
    const RootPoint target{.x = screenWidth - 5, .y = 14};
    user_.drag(middleOf(*c_), target, super);
    EXPECT_TRUE(comesToBe({"a", "b", "divider", "c"}));
}

TEST_F(UserDragTests, AStretchedDividerKeepsWhatItHides) {
    TrayClient& divider = dock({.name = "divider", .preferredPosition = 1});
    ASSERT_THAT(names(), ElementsAre("a", "b", "divider", "c"));
    divider.askForWidth(2560);
    EXPECT_TRUE(eventually([&] { return frameOf(*b_).right() < 0; }));
    // The visible one cannot be dragged over to the hidden ones.
    user_.drag(middleOf(*c_), {.x = 100, .y = 14}, super);
    EXPECT_TRUE(eventually([&] { return frameOf(*c_).right() == screenWidth; }));
    EXPECT_THAT(names(), ElementsAre("a", "b", "divider", "c"));
    // The divider itself can go past it.
    user_.drag({.x = 1000, .y = 14}, {.x = 1027, .y = 14}, super);
    EXPECT_TRUE(comesToBe({"a", "b", "c", "divider"}));
}

} // namespace
} // namespace pelistra::testing
