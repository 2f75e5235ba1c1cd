#include "platform/posix/StopSignals.h"

#include <chrono>
#include <thread>

#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

namespace pelistra::testing {

namespace {

using posix::StopSignals;
using std::chrono::milliseconds;

constexpr int forgotten = 7;

bool isReadable(const StopSignals& signals) {
    pollfd descriptor{.fd = signals.fileDescriptor(), .events = POLLIN, .revents = 0};
    return ::poll(&descriptor, 1, 0) == 1;
}

// Longer than any program may take.
void doSomethingElse() {
    std::this_thread::sleep_for(StopSignals::patience * 4);
}

TEST(StopSignalsTests, TellOfEachSignal) {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        StopSignals signals;
        signals.begin();
        EXPECT_FALSE(isReadable(signals));
        ::raise(number);
        EXPECT_TRUE(isReadable(signals));
    }
    // All of them have ended in time.
    std::this_thread::sleep_for(StopSignals::patience + milliseconds(200));
}

TEST(StopSignalsDeathTests, EndAProgramAtOnceUntilTheyHaveBegun) {
    EXPECT_EXIT(
        {
            const StopSignals signals;
            ::raise(SIGTERM);
            ::_exit(forgotten);
        },
        ::testing::ExitedWithCode(0), "");
}

TEST(StopSignalsDeathTests, EndAProgramThatDoesNotEnd) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EXIT(
        {
            StopSignals signals;
            signals.begin();
            ::raise(SIGTERM);
            // A user who is out of patience gets no more of it.
            std::this_thread::sleep_for(StopSignals::patience / 2);
            ::raise(SIGINT);
            doSomethingElse();
            ::_exit(forgotten);
        },
        ::testing::ExitedWithCode(0), "");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, StopSignals::patience);
}

TEST(StopSignalsDeathTests, LeaveSignalsAloneThatAreIgnored) {
    EXPECT_EXIT(
        {
            ::signal(SIGHUP, SIG_IGN);
            StopSignals signals;
            signals.begin();
            ::raise(SIGHUP);
            ::_exit(isReadable(signals) ? 1 : 0);
        },
        ::testing::ExitedWithCode(0), "");
}

} // namespace

} // namespace pelistra::testing
