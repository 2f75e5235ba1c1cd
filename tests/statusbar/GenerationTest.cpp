#include "statusbar/Generation.h"

#include <gtest/gtest.h>

#include <limits>

namespace pelistra {
namespace {

TEST(GenerationTest, StartsAtZero) {
    EXPECT_EQ(Generation().number(), 0);
}

TEST(GenerationTest, AdvancesByOne) {
    Generation generation;
    generation.advance();
    generation.advance();

    EXPECT_EQ(generation.number(), 2);
}

TEST(GenerationDeathTest, EndsTheProcessWhenTheNumbersRunOut) {
    Generation generation(std::numeric_limits<Generation::Number>::max() - 1);
    generation.advance();

    EXPECT_DEATH(generation.advance(), "the reveal generation overflowed");
}

} // namespace
} // namespace pelistra
