#include "menubar/Retrieval.h"

#include <gtest/gtest.h>

namespace pelistra::menubar {
namespace {

using namespace std::chrono_literals;

const Retrieval::Clock::time_point docked{1h};

TEST(RetrievalTests, FetchesAWindowThreeTimes) {
    Retrieval retrieval(docked);
    for (int time = 0; time < 3; ++time) {
        EXPECT_FALSE(retrieval.isExhausted());
        EXPECT_TRUE(retrieval.fetch(docked + 1ms));
    }
    EXPECT_TRUE(retrieval.isExhausted());
    EXPECT_FALSE(retrieval.fetch(docked + 1ms));
}

TEST(RetrievalTests, LetsAWindowGoThatHasBeenThereForTwoSeconds) {
    Retrieval retrieval(docked);
    EXPECT_TRUE(retrieval.fetch(docked + 2s));
    EXPECT_FALSE(retrieval.fetch(docked + 2s + 1ns));
    EXPECT_FALSE(retrieval.isExhausted());
}

} // namespace
} // namespace pelistra::menubar
