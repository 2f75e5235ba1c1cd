#pragma once

#include "platform/MainQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

namespace pelistra::testing {

// What every main queue promises. Backend:
//   MainQueue& queue();
//   Seconds now();                         the clock that the queue's delays are measured on
//   bool runUntil(condition);              lets the queue run; whether the condition came true
//   within ten seconds
template <class Backend>
class MainQueueContract : public ::testing::Test {
protected:
    Backend backend_;
};

TYPED_TEST_SUITE_P(MainQueueContract);

TYPED_TEST_P(MainQueueContract, BlocksRunInTheirOrderAndNeverInsideTheCall) {
    std::vector<int> order;
    for (int i = 0; i < 5; ++i) {
        this->backend_.queue().async([&order, i] { order.push_back(i); });
    }
    this->backend_.queue().asyncAfter(Seconds(0), [&order] { order.push_back(5); });
    EXPECT_TRUE(order.empty());
    EXPECT_TRUE(this->backend_.runUntil([&] { return order.size() == 6; }));
    EXPECT_THAT(order, ::testing::ElementsAre(0, 1, 2, 3, 4, 5));
}

TYPED_TEST_P(MainQueueContract, ABlockSubmittedByABlockRunsAfterTheOthers) {
    std::vector<int> order;
    this->backend_.queue().async([&] {
        this->backend_.queue().async([&] { order.push_back(3); });
        order.push_back(1);
    });
    this->backend_.queue().async([&] { order.push_back(2); });
    EXPECT_TRUE(this->backend_.runUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ::testing::ElementsAre(1, 2, 3));
}

TYPED_TEST_P(MainQueueContract, ADelayIsNeverShorterThanAsked) {
    for (const double delay : {0.0, 0.0004, 0.0101, 0.05}) {
        const Seconds start = this->backend_.now();
        std::optional<Seconds> ran;
        this->backend_.queue().asyncAfter(Seconds(delay), [&] { ran = this->backend_.now(); });
        ASSERT_TRUE(this->backend_.runUntil([&] { return ran.has_value(); }));
        // The clock of the test has nanoseconds.
        EXPECT_GE((*ran - start).count(), delay - 1e-9);
    }
}

TYPED_TEST_P(MainQueueContract, ShorterDelaysRunFirst) {
    std::vector<int> order;
    this->backend_.queue().asyncAfter(Seconds(0.06), [&] { order.push_back(2); });
    this->backend_.queue().asyncAfter(Seconds(0.02), [&] { order.push_back(1); });
    EXPECT_TRUE(this->backend_.runUntil([&] { return order.size() == 2; }));
    EXPECT_THAT(order, ::testing::ElementsAre(1, 2));
}

TYPED_TEST_P(MainQueueContract, ATimerRepeatsUntilItsTokenDies) {
    const Seconds start = this->backend_.now();
    int ticks = 0;
    auto token = this->backend_.queue().repeatingTimer(Seconds(0.02), [&] { ++ticks; });
    EXPECT_TRUE(this->backend_.runUntil([&] { return ticks == 3; }));
    EXPECT_GE((this->backend_.now() - start).count(), 0.059);
    token.reset();
    bool later = false;
    this->backend_.queue().asyncAfter(Seconds(0.06), [&] { later = true; });
    EXPECT_TRUE(this->backend_.runUntil([&] { return later; }));
    EXPECT_EQ(ticks, 3);
}

TYPED_TEST_P(MainQueueContract, ATimerMayEndItself) {
    int sum = 0;
    SubscriptionPtr token;
    token =
        this->backend_.queue().repeatingTimer(Seconds(0.005), [&, kept = std::make_shared<int>(7)] {
            token.reset();
            sum += *kept;
        });
    EXPECT_TRUE(this->backend_.runUntil([&] { return sum == 7; }));
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract, BlocksRunInTheirOrderAndNeverInsideTheCall,
                            ABlockSubmittedByABlockRunsAfterTheOthers,
                            ADelayIsNeverShorterThanAsked, ShorterDelaysRunFirst,
                            ATimerRepeatsUntilItsTokenDies, ATimerMayEndItself);

} // namespace pelistra::testing
