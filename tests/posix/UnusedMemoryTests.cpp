#include "platform/posix/UnusedMemory.h"

#include "tests/desktop/harness/ChildProcess.h"

#include <array>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

namespace pelistra::testing {

namespace {

int one() {
    return 1;
}
int two() {
    return 2;
}

// The loader writes the addresses into it, and makes it unchangeable.
const std::array<int (*)(), 2> functions{one, two};

TEST(UnusedMemoryTests, CodeIsGivenBackAndComesBackWhenItIsUsed) {
    const auto before = memoryGivenBack(::getpid());
    posix::giveBackUnusedMemory();
    constexpr long someCode = 1024;
    EXPECT_GE(memoryGivenBack(::getpid()), before.value() + someCode);
    EXPECT_EQ(functions[0]() + functions[1](), 3);
    EXPECT_EQ(std::stod("0.5"), 0.5);
}

TEST(UnusedMemoryTests, ItMayBeDoneAgainAndAgain) {
    for (int time = 0; time < 3; ++time) {
        posix::giveBackUnusedMemory();
        EXPECT_EQ(functions[1](), 2);
    }
}

} // namespace
} // namespace pelistra::testing
