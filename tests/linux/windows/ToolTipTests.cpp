#include "platform/linux/windows/ToolTip.h"

#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using linux::RootRect;
using linux::toolTipFrame;

constexpr RootRect monitor{.x = 1000, .y = 0, .width = 1280, .height = 800};

TEST(ToolTip, HangsCentredBelowItsItem) {
    const RootRect item{.x = 1500, .y = 0, .width = 28, .height = 28};
    EXPECT_EQ(toolTipFrame(200, 30, item, monitor, 4),
              (RootRect{.x = 1414, .y = 32, .width = 200, .height = 30}));
}

TEST(ToolTip, StaysOnTheMonitor) {
    const RootRect right{.x = 2252, .y = 0, .width = 28, .height = 28};
    EXPECT_EQ(toolTipFrame(200, 30, right, monitor, 4).right(), monitor.right() - 4);
    const RootRect left{.x = 1000, .y = 0, .width = 28, .height = 28};
    EXPECT_EQ(toolTipFrame(200, 30, left, monitor, 4).x, monitor.x + 4);
    EXPECT_EQ(toolTipFrame(2000, 30, right, monitor, 4).x, monitor.x + 4);
}

TEST(ToolTip, GoesAboveAnItemAtTheBottom) {
    const RootRect item{.x = 1500, .y = 772, .width = 28, .height = 28};
    EXPECT_EQ(toolTipFrame(200, 30, item, monitor, 4).y, 772 - 4 - 30);
}

} // namespace

} // namespace pelistra::testing
