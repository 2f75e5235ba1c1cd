#include "platform/linux/loop/GlibMainQueue.h"

#include "tests/contract/MainQueueContract.h"
#include "tests/linux/loop/RunUntil.h"

#include <chrono>
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using linux::GlibMainQueue;
using ::testing::ElementsAre;

struct GlibBackend {
    MainQueue& queue() { return own; }
    static Seconds now() { return std::chrono::steady_clock::now().time_since_epoch(); }
    template <class Condition>
    bool runUntil(Condition condition) {
        return testing::runUntil(condition);
    }

    GlibMainQueue own;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Glib, MainQueueContract, GlibBackend);

TEST(GlibMainQueueTest, ABlockMayRunAnEventLoopOfItsOwn) {
    GlibMainQueue queue;
    std::vector<int> order;
    queue.async([&] {
        queue.async([&] { order.push_back(3); });
        EXPECT_TRUE(runUntil([&] { return order.size() == 2; }));
        order.push_back(1);
    });
    queue.async([&] { order.push_back(2); });
    EXPECT_TRUE(runUntil([&] { return order.size() == 3; }));
    EXPECT_THAT(order, ElementsAre(2, 3, 1));
}

TEST(GlibMainQueueTest, NothingRunsOnceTheQueueIsGone) {
    bool ran = false;
    auto queue = std::make_unique<GlibMainQueue>();
    queue->async([&] { ran = true; });
    queue->asyncAfter(Seconds(0), [&] { ran = true; });
    queue.reset();
    GlibMainQueue other;
    bool later = false;
    other.asyncAfter(Seconds(0.02), [&] { later = true; });
    EXPECT_TRUE(runUntil([&] { return later; }));
    EXPECT_FALSE(ran);
}

} // namespace

} // namespace pelistra::testing
