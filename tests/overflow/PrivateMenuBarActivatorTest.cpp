#include "overflow/PrivateMenuBarActivator.h"

#include "tests/overflow/OverflowFixture.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <vector>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

constexpr ProcessId ownerPid = 300;
constexpr WindowId windowId = 4'000'000'001;

const LogLine posted{.subsystem = "com.pelistra.app",
                     .category = "private-activation",
                     .level = LogLevel::Info,
                     .message = "Posted a PID-scoped click to window 4000000001"};
const LogLine pointerMoved{
    .subsystem = "com.pelistra.app",
    .category = "private-activation",
    .level = LogLevel::Fault,
    .message = "Targeted activation unexpectedly changed pointer position; disabling this result"};

class PrivateMenuBarActivatorTest : public OverflowFixture {
protected:
    void SetUp() override {
        run(ownerPid, "Foo");
        library.frames[windowId] = makeRect<GlobalSpace>(100, 2, 31, 24);
        item.id = windowId;
        item.ownerPID = ownerPid;
        item.lastKnownFrame = makeRect<GlobalSpace>(-200, 10, 20, 22);
    }
    void TearDown() override {
        EXPECT_EQ(posting.living(), 0);
        EXPECT_EQ(library.misuses, 0);
    }

    bool activate() {
        const PrivateMenuBarActivator activator(makeBridge(), services());
        journal.clear();
        return activator.activate(item);
    }

    OverflowItem item;
};

TEST_F(PrivateMenuBarActivatorTest, StepsRunInOrder) {
    EXPECT_TRUE(activate());
    const auto& entries = journal.entries();
    // The library is closed at the end, with the bridge.
    EXPECT_THAT(entries,
                ElementsAre("runningApplication 300", "source -1", "mainConnection",
                            "windowFrame(77, 4000000001)", "mouseEvent 1", "field 1 40",
                            "field 1 91", "field 1 92", "field 1 51", "field 1 1", "mouseEvent 2",
                            "field 2 40", "field 2 91", "field 2 92", "field 2 51", "field 2 1",
                            "post 1 300", "post 2 300", "log info: " + posted.message, "dlclose"));
    EXPECT_THAT(log.lines, ElementsAre(posted));
}

TEST_F(PrivateMenuBarActivatorTest, EventsDifferOnlyInTheirType) {
    EXPECT_TRUE(activate());
    ASSERT_THAT(posting.events, SizeIs(2));
    EXPECT_EQ(posting.events[0]->type, EventType::LeftMouseDown);
    EXPECT_EQ(posting.events[1]->type, EventType::LeftMouseUp);
    for (const auto& event : posting.events) {
        EXPECT_EQ(event->location, (Point{.x = 115.5, .y = 14}));
        EXPECT_EQ(event->button, MouseButton::Left);
        EXPECT_THAT(event->fields,
                    ElementsAre(Pair(40U, 300), Pair(91U, 4'000'000'001), Pair(92U, 4'000'000'001),
                                Pair(51U, 4'000'000'001), Pair(1U, 1)));
        EXPECT_THAT(event->postedTo, ElementsAre(300));
    }
}

TEST_F(PrivateMenuBarActivatorTest, OwnersWithoutProcessIdAreRefusedAtOnce) {
    for (const ProcessId pid : {0, -1, std::numeric_limits<ProcessId>::min()}) {
        run(pid, "Foo");
        item.ownerPID = pid;
        EXPECT_FALSE(activate());
        EXPECT_THAT(journal.entries(), ElementsAre("dlclose"));
    }
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PrivateMenuBarActivatorTest, ProcessOneIsAnOwnerLikeOthers) {
    run(1, "Foo");
    item.ownerPID = 1;
    EXPECT_TRUE(activate());
    EXPECT_THAT(journal.entriesStartingWith("post"), ElementsAre("post 1 1", "post 2 1"));
}

TEST_F(PrivateMenuBarActivatorTest, OwnerThatHasQuitIsRefused) {
    applications.running.clear();
    EXPECT_FALSE(activate());
    EXPECT_THAT(journal.entries(), ElementsAre("runningApplication 300", "dlclose"));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PrivateMenuBarActivatorTest, WithoutSourceNothingIsMade) {
    posting.refusesSource = true;
    EXPECT_FALSE(activate());
    EXPECT_THAT(journal.entries(), ElementsAre("runningApplication 300", "source -1", "dlclose"));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PrivateMenuBarActivatorTest, WithoutLiveFrameTheLastKnownOneCounts) {
    library.frames.clear();
    EXPECT_TRUE(activate());
    EXPECT_EQ(posting.events.at(0)->location, (Point{.x = -190, .y = 21}));
    EXPECT_EQ(posting.events.at(1)->location, (Point{.x = -190, .y = 21}));
    EXPECT_THAT(log.lines, ElementsAre(posted));
}

TEST_F(PrivateMenuBarActivatorTest, RefusedLiveFrameIsNotUsedEvenWhenItWasWritten) {
    library.frameErrors[windowId] = 1000;
    EXPECT_TRUE(activate());
    EXPECT_EQ(posting.events.at(0)->location, (Point{.x = -190, .y = 21}));
}

TEST_F(PrivateMenuBarActivatorTest, WithoutSymbolsTheLastKnownFrameCounts) {
    library.missing = true;
    EXPECT_TRUE(activate());
    EXPECT_EQ(posting.events.at(0)->location, (Point{.x = -190, .y = 21}));
}

TEST_F(PrivateMenuBarActivatorTest, SizeOfTheFrameIsNotChecked) {
    library.frames[windowId] = makeRect<GlobalSpace>(10, 20, 0, 4000);
    EXPECT_TRUE(activate());
    EXPECT_EQ(posting.events.at(0)->location, (Point{.x = 10, .y = 2020}));
}

TEST_F(PrivateMenuBarActivatorTest, WithoutDownEventNothingIsPosted) {
    posting.refusedEvents = {EventType::LeftMouseDown};
    EXPECT_FALSE(activate());
    EXPECT_THAT(journal.entriesStartingWith("mouseEvent"), ElementsAre("mouseEvent 1"));
    EXPECT_THAT(journal.entriesStartingWith("post"), IsEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PrivateMenuBarActivatorTest, WithoutUpEventNothingIsPosted) {
    posting.refusedEvents = {EventType::LeftMouseUp};
    EXPECT_FALSE(activate());
    EXPECT_THAT(journal.entriesStartingWith("mouseEvent"),
                ElementsAre("mouseEvent 1", "mouseEvent 2"));
    EXPECT_THAT(journal.entriesStartingWith("post"), IsEmpty());
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(PrivateMenuBarActivatorTest, PointerThatMovedMakesItAFailure) {
    const ScreenPoint home = application.pointer;
    for (const auto& [type, moved] : std::vector<std::pair<EventType, ScreenPoint>>{
             {EventType::LeftMouseDown, {.x = home.x + 1e-9, .y = home.y}},
             {EventType::LeftMouseUp, {.x = home.x, .y = home.y - 1e-9}},
             {EventType::LeftMouseUp, {.x = 0, .y = 0}}}) {
        application.pointer = home;
        log.lines.clear();
        posting.duringPost = [this, type, moved](EventType each) {
            if (each == type) {
                application.pointer = moved;
            }
        };
        EXPECT_FALSE(activate());
        EXPECT_THAT(journal.entriesStartingWith("post"), ElementsAre("post 1 300", "post 2 300"));
        EXPECT_THAT(log.lines, ElementsAre(pointerMoved));
    }
}

TEST_F(PrivateMenuBarActivatorTest, FailureIsNotRemembered) {
    const PrivateMenuBarActivator activator(makeBridge(), services());
    posting.duringPost = [this](EventType) { application.pointer.x += 1; };
    EXPECT_FALSE(activator.activate(item));
    posting.duringPost = nullptr;
    EXPECT_TRUE(activator.activate(item));
    EXPECT_THAT(log.lines, ElementsAre(pointerMoved, posted));
}

TEST_F(PrivateMenuBarActivatorTest, PointerIsFirstReadAfterTheEventsWereMade) {
    posting.duringMaking = [this](EventType) { application.pointer.x += 1; };
    EXPECT_TRUE(activate());
    EXPECT_THAT(log.lines, ElementsAre(posted));
}

TEST_F(PrivateMenuBarActivatorTest, ClickThatNobodyReceivedIsAFailure) {
    posting.unreceivedEvents = {EventType::LeftMouseDown};
    EXPECT_FALSE(activate());
    EXPECT_THAT(journal.entriesStartingWith("post"), ElementsAre("post 1 300", "post 2 300"));
    posting.unreceivedEvents = {EventType::LeftMouseUp};
    EXPECT_FALSE(activate());
    EXPECT_THAT(journal.entriesStartingWith("post"), ElementsAre("post 1 300", "post 2 300"));
    EXPECT_THAT(log.lines, IsEmpty());
}

} // namespace
} // namespace pelistra::testing
