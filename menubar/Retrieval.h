#pragma once

#include <chrono>

namespace pelistra::menubar {

// How often the bar fetches back a window that was taken out of it right after it came: a window
// manager that was about to manage an orphan of an earlier bar does so. X does not tell who moved a
// window, so it may as well be its own program's wish; that is why there is an end to it.
class Retrieval {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr int limit = 3;
    // From the first docking on.
    static constexpr std::chrono::seconds period{2};

    explicit Retrieval(Clock::time_point firstDocked = Clock::now()) : firstDocked_(firstDocked) {}

    // The window was taken out at `now`. True when it is to be fetched, which counts as done then.
    [[nodiscard]] bool fetch(Clock::time_point now = Clock::now());
    // The window keeps being taken, as opposed to leaving after some time in the bar.
    [[nodiscard]] bool isExhausted() const { return count_ >= limit; }

private:
    Clock::time_point firstDocked_;
    int count_ = 0;
};

} // namespace pelistra::menubar
