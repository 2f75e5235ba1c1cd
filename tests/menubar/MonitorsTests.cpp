#include "menubar/Monitors.h"

#include <vector>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::barMonitor;
using menubar::canReserveTop;
using menubar::Monitor;
using menubar::PixelRect;

const PixelRect left{.x = 0, .y = 0, .width = 800, .height = 600};
const PixelRect right{.x = 800, .y = 0, .width = 800, .height = 600};
const PixelRect below{.x = 0, .y = 600, .width = 800, .height = 600};

TEST(MonitorsTests, TheBarIsOnThePrimaryMonitor) {
    EXPECT_EQ(
        barMonitor(std::vector<Monitor>{{.frame = left}, {.frame = right, .isPrimary = true}}),
        right);
}

TEST(MonitorsTests, WithoutAPrimaryOneTheFirstIsTaken) {
    EXPECT_EQ(barMonitor(std::vector<Monitor>{{.frame = right}, {.frame = left}}), right);
    EXPECT_EQ(barMonitor({}), PixelRect{});
}

TEST(MonitorsTests, SpaceIsReservedUnlessAMonitorLiesAbove) {
    EXPECT_TRUE(canReserveTop(std::vector<Monitor>{{.frame = left}}, left));
    EXPECT_TRUE(canReserveTop(std::vector<Monitor>{{.frame = left}, {.frame = right}}, right));
    EXPECT_FALSE(canReserveTop(std::vector<Monitor>{{.frame = left}, {.frame = below}}, below));
    EXPECT_TRUE(canReserveTop(std::vector<Monitor>{{.frame = right}, {.frame = below}}, below));
}

} // namespace
} // namespace pelistra::testing
