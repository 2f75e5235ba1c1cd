#include "menubar/Complaints.h"

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::Complaints;
using namespace std::chrono_literals;

TEST(ComplaintsTests, OneLineInAWhileThatCountsTheOthers) {
    Complaints complaints;
    const Complaints::Clock::time_point start{};
    EXPECT_EQ(complaints.lineFor("first", start), "first");
    EXPECT_EQ(complaints.lineFor("second", start + 1s), std::nullopt);
    EXPECT_EQ(complaints.lineFor("third", start + Complaints::pause - 1ms), std::nullopt);
    EXPECT_EQ(complaints.lineFor("fourth", start + Complaints::pause),
              "fourth (and 2 more such faults before)");
    EXPECT_EQ(complaints.lineFor("fifth", start + 2 * Complaints::pause), "fifth");
}

} // namespace
} // namespace pelistra::testing
