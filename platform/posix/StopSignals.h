#pragma once

#include <chrono>
#include <map>
#include <optional>

#include <csignal>
#include <ctime>

namespace pelistra::posix {

// SIGINT, SIGTERM and SIGHUP as something to wait for beside other descriptors, so that a program
// can end in order. There is at most one. Signals stay unblocked, so that programs started from
// here begin with their usual ones, and ignored where whoever started this one has ignored them.
//
// Whatever the program waits for when the first one comes, it ends: when this object still lives
// after `patience`, then there and then, with status 0. Nothing may be lost by that, so what has to
// last must be on disk, or on its way there, before anything is waited for.
class StopSignals {
public:
    // Users, and whoever ends a session, take a program for hung that takes longer than two
    // seconds.
    static constexpr std::chrono::milliseconds patience{1500};

    StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    ~StopSignals();

    // Until then each signal ends the program at once, with status 0.
    void begin();

    // Readable from the first signal on; -1 when the system could not make it.
    [[nodiscard]] int fileDescriptor() const { return descriptor_; }

private:
    using Handler = void (*)(int);
    void take(int number, Handler handler);

    int descriptor_;
    std::optional<timer_t> timer_;
    // How the signals that were taken were handled before.
    std::map<int, struct sigaction> before_;
};

} // namespace pelistra::posix
