#include "platform/linux/loop/GlibMainQueue.h"
#include "tests/linux/loop/RunUntil.h"

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using desktop::GlibMainQueue;
using ::testing::ElementsAre;
using Clock = std::chrono::steady_clock;

class GlibMainQueueTest : public ::testing::Test {
protected:
    GlibMainQueue queue_;
};

TEST_F(GlibMainQueueTest, BlocksRunInTheirOrderAndNeverInsideTheCall) {
    std::vector<int> order;
    for (int i = 0; i < 5; ++i) {
        queue_.async([&order, i] { order.push_back(i); });
    }
    EXPECT_TRUE(order.empty());
    EXPECT_TRUE(runUntil([&] { return order.size() == 5; }));
    EXPECT_THAT(order, ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(GlibMainQueueTest, ABlockMayRunAnEventLoopOfItsOwn) {
    std::vector<int> order;
    queue_.async([&] {
        queue_.async([&] { order.push_back(3); });
        EXPECT_TRUE(runUntil([&] { return order.size() == 2; }));
        order.push_back(1);
    });
    queue_.async([&] { order.push_back(2); });
    EXPECT_TRUE(runUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ElementsAre(2, 3, 1));
}

TEST_F(GlibMainQueueTest, ABlockSubmittedByABlockRunsAfterTheOthers) {
    std::vector<int> order;
    queue_.async([&] {
        queue_.async([&] { order.push_back(3); });
        order.push_back(1);
    });
    queue_.async([&] { order.push_back(2); });
    EXPECT_TRUE(runUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST_F(GlibMainQueueTest, ADelayIsNeverShorterThanAsked) {
    for (const double delay : {0.0, 0.0004, 0.0101, 0.05}) {
        const auto start = Clock::now();
        std::optional<Clock::time_point> ran;
        queue_.asyncAfter(Seconds(delay), [&] { ran = Clock::now(); });
        ASSERT_TRUE(runUntil([&] { return ran.has_value(); }));
        EXPECT_GE(*ran - start, std::chrono::duration_cast<Clock::duration>(Seconds(delay)));
    }
}

TEST_F(GlibMainQueueTest, ShorterDelaysRunFirst) {
    std::vector<int> order;
    queue_.asyncAfter(Seconds(0.06), [&] { order.push_back(2); });
    queue_.asyncAfter(Seconds(0.02), [&] { order.push_back(1); });
    EXPECT_TRUE(runUntil([&] { return order.size() == 2; }));
    EXPECT_THAT(order, ElementsAre(1, 2));
}

TEST_F(GlibMainQueueTest, ATimerRepeatsUntilItsTokenDies) {
    const auto start = Clock::now();
    int ticks = 0;
    auto token = queue_.repeatingTimer(Seconds(0.02), [&] { ++ticks; });
    EXPECT_TRUE(runUntil([&] { return ticks == 3; }));
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(59));
    token.reset();
    bool later = false;
    queue_.asyncAfter(Seconds(0.06), [&] { later = true; });
    EXPECT_TRUE(runUntil([&] { return later; }));
    EXPECT_EQ(ticks, 3);
}

TEST_F(GlibMainQueueTest, ATimerMayEndItself) {
    int ticks = 0;
    SubscriptionPtr token;
    token = queue_.repeatingTimer(Seconds(0.005), [&, kept = std::make_shared<int>(7)] {
        token.reset();
        ticks += *kept;
    });
    EXPECT_TRUE(runUntil([&] { return ticks == 7; }));
}

TEST_F(GlibMainQueueTest, NothingRunsOnceTheQueueIsGone) {
    bool ran = false;
    auto queue = std::make_unique<GlibMainQueue>();
    queue->async([&] { ran = true; });
    queue->asyncAfter(Seconds(0), [&] { ran = true; });
    queue.reset();
    bool later = false;
    queue_.asyncAfter(Seconds(0.02), [&] { later = true; });
    EXPECT_TRUE(runUntil([&] { return later; }));
    EXPECT_FALSE(ran);
}

} // namespace

} // namespace pelistra::testing
