#include "platform/posix/ProgramPages.h"

#include <array>
#include <fstream>
#include <functional>
#include <string>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using posix::releaseProgramPages;

// Pages of files, code above all, that are in this process's memory.
long filePagesInMemory() {
    long size = 0;
    long resident = 0;
    long ofFiles = 0;
    std::ifstream("/proc/self/statm") >> size >> resident >> ofFiles;
    return ofFiles;
}

int doubled(int number) {
    return number + number;
}

int negative(int number) {
    return -number;
}

// Addresses in a constant: the loader writes them.
constexpr std::array<int (*)(int), 2> operations{doubled, negative};

TEST(ProgramPagesTests, WhatIsReleasedLeavesTheProcess) {
    const long before = filePagesInMemory();
    releaseProgramPages();
    const long after = filePagesInMemory();
    ASSERT_GT(before, 0);
    EXPECT_LT(after, before / 2);
}

TEST(ProgramPagesTests, ReleasedCodeComesBackWhenItIsUsed) {
    releaseProgramPages();
    const long released = filePagesInMemory();
    constexpr int number = 21;
    EXPECT_EQ(operations[0](number), number + number);
    EXPECT_EQ(operations[1](number), -number);
    EXPECT_GE(filePagesInMemory(), released);
}

TEST(ProgramPagesTests, WhatTheProgramHasWrittenStays) {
    constexpr int value = 7;
    constexpr std::size_t length = 100'000;
    static int written = 0;
    written = value;
    const std::string text(length, 'x');
    releaseProgramPages();
    EXPECT_EQ(written, value);
    EXPECT_EQ(text, std::string(length, 'x'));
}

TEST(ProgramPagesTests, ErrorsAreStillThrownAndCaught) {
    releaseProgramPages();
    EXPECT_THROW(static_cast<void>(std::function<void()>()()), std::bad_function_call);
}

} // namespace
} // namespace pelistra::testing
