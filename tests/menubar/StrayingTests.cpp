#include "menubar/Straying.h"

#include <gtest/gtest.h>

namespace pelistra::menubar {
namespace {

using namespace std::chrono_literals;

TEST(StrayingTests, PutsAWindowBackTwentyTimesInASecond) {
    Straying straying;
    const Straying::Clock::time_point begin{1h};
    for (int second = 0; second < 3; ++second) {
        const auto now = begin + second * 1s;
        for (int time = 0; time < 20; ++time) {
            EXPECT_TRUE(straying.putBack(now + time * 1ms));
        }
        EXPECT_FALSE(straying.putBack(now + 999ms));
    }
}

} // namespace
} // namespace pelistra::menubar
