#include "platform/macos/MacPlatform.h"
#include "tests/macos/standins/World.h"

#include <gmock/gmock.h>

namespace pelistra::appkit {
namespace {

using namespace pelistra::testing::standins;
using ::testing::ElementsAre;

TEST(DispatchMainQueueTest, RunsBlocksOnTheNextTurnInOrder) {
    DispatchMainQueue queue;
    std::string order;
    queue.async([&order] { order += "a"; });
    queue.async([&order] { order += "b"; });
    EXPECT_EQ(order, "");
    EXPECT_TRUE(runUntil([&order] { return order.size() == 2; }));
    EXPECT_EQ(order, "ab");
}

} // namespace
} // namespace pelistra::appkit
