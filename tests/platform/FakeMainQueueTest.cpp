#include "tests/platform/FakeMainQueue.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FakeMainQueueTest : public ::testing::Test {
protected:
    std::function<void()> noting(const std::string& name) {
        return [this, name] { ran_.push_back(name); };
    }

    Journal journal_;
    FakeMainQueue queue_{journal_};
    std::vector<std::string> ran_;
};

TEST_F(FakeMainQueueTest, RunsNothingInsideTheCallThatSubmitsIt) {
    queue_.async(noting("turn"));
    queue_.asyncAfter(Seconds(0), noting("delay"));

    EXPECT_THAT(ran_, IsEmpty());
}

TEST_F(FakeMainQueueTest, RunsBlocksInTheOrderOfSubmission) {
    queue_.async(noting("first"));
    queue_.async(noting("second"));
    queue_.runTurn();

    EXPECT_THAT(ran_, ElementsAre("first", "second"));
}

TEST_F(FakeMainQueueTest, ABlockSubmittedDuringATurnWaitsForTheNextOne) {
    queue_.async([this] { queue_.async(noting("inner")); });

    queue_.runTurn();
    EXPECT_THAT(ran_, IsEmpty());
    queue_.runTurn();
    EXPECT_THAT(ran_, ElementsAre("inner"));
}

TEST_F(FakeMainQueueTest, ADelayedBlockRunsWhenItsTimeHasComeAndNotBefore) {
    queue_.asyncAfter(Seconds(0.25), noting("late"));

    queue_.advance(Seconds(0.249));
    EXPECT_THAT(ran_, IsEmpty());
    queue_.advance(Seconds(0.001));
    EXPECT_THAT(ran_, ElementsAre("late"));
    queue_.advance(Seconds(10));
    EXPECT_THAT(ran_, ElementsAre("late"));
}

TEST_F(FakeMainQueueTest, DelayedBlocksRunByTimeAndThenBySubmission) {
    queue_.asyncAfter(Seconds(2), noting("two"));
    queue_.asyncAfter(Seconds(1), noting("one"));
    queue_.asyncAfter(Seconds(2), noting("two again"));
    queue_.advance(Seconds(3));

    EXPECT_THAT(ran_, ElementsAre("one", "two", "two again"));
}

TEST_F(FakeMainQueueTest, ADelayIsMeasuredFromTheMomentOfTheCall) {
    queue_.asyncAfter(Seconds(1), [this] { queue_.asyncAfter(Seconds(1), noting("second")); });

    queue_.advance(Seconds(1.5));
    EXPECT_THAT(ran_, IsEmpty());
    queue_.advance(Seconds(0.5));
    EXPECT_THAT(ran_, ElementsAre("second"));
}

TEST_F(FakeMainQueueTest, ATimerFiresEveryIntervalUntilItsTokenDies) {
    auto timer = queue_.repeatingTimer(Seconds(2), noting("tick"));

    queue_.advance(Seconds(1.9));
    EXPECT_THAT(ran_, IsEmpty());
    queue_.advance(Seconds(4.2));
    EXPECT_THAT(ran_, ElementsAre("tick", "tick", "tick"));
    timer.reset();
    queue_.advance(Seconds(10));
    EXPECT_EQ(ran_.size(), 3U);
    EXPECT_EQ(queue_.runningTimers(), 0U);
}

TEST_F(FakeMainQueueTest, ATimerMayEndItselfWhileItFires) {
    SubscriptionPtr timer;
    timer = queue_.repeatingTimer(Seconds(1), [&] {
        ran_.emplace_back("tick");
        timer.reset();
    });
    queue_.advance(Seconds(5));

    EXPECT_THAT(ran_, ElementsAre("tick"));
}

TEST_F(FakeMainQueueTest, TurnsRunBetweenTicks) {
    const auto timer = queue_.repeatingTimer(Seconds(1), [this] {
        ran_.emplace_back("tick");
        queue_.async(noting("hop"));
    });
    queue_.advance(Seconds(2));

    EXPECT_THAT(ran_, ElementsAre("tick", "hop", "tick", "hop"));
}

TEST_F(FakeMainQueueTest, WhatIsDueAtOneMomentComesBeforeTheTurnsThatItAsksFor) {
    queue_.asyncAfter(Seconds(1), [this] { queue_.async(noting("turn of the first")); });
    queue_.asyncAfter(Seconds(1), noting("second"));
    queue_.advance(Seconds(1));

    EXPECT_THAT(ran_, ElementsAre("second", "turn of the first"));
}

TEST_F(FakeMainQueueTest, TheClockStandsWhereTimeWasLetPass) {
    queue_.asyncAfter(Seconds(1), [this] { EXPECT_DOUBLE_EQ(queue_.now().count(), 1); });
    queue_.advance(Seconds(2.5));

    EXPECT_DOUBLE_EQ(queue_.now().count(), 2.5);
}

TEST_F(FakeMainQueueTest, ManySmallStepsAddUp) {
    queue_.asyncAfter(Seconds(0.3), noting("late"));
    for (int step = 0; step < 3; ++step) {
        queue_.advance(Seconds(0.1));
    }

    EXPECT_THAT(ran_, ElementsAre("late"));
}

TEST_F(FakeMainQueueTest, ABlockThatAlwaysSubmitsAnotherIsReported) {
    std::function<void()> forever = [&] { queue_.async([&] { forever(); }); };
    queue_.async(forever);

    EXPECT_THROW(queue_.runUntilIdle(), std::runtime_error);
}

TEST_F(FakeMainQueueTest, ATimerWithoutAnIntervalIsReported) {
    EXPECT_THROW(static_cast<void>(queue_.repeatingTimer(Seconds(0), [] {})),
                 std::invalid_argument);
}

TEST_F(FakeMainQueueTest, KeepsWhatWasAskedInOrder) {
    queue_.async([] {});
    queue_.asyncAfter(Seconds(0.25), [] {});
    queue_.repeatingTimer(Seconds(2), [] {}).reset();

    EXPECT_THAT(journal_.entries(),
                ElementsAre("async", "after 0.25", "every 2", "end of every 2"));
}

} // namespace
} // namespace pelistra::testing
