#pragma once

#include <chrono>

namespace pelistra::menubar {

// How often a window that changes its place in its container by itself is put back: a program that
// never accepts what it is given must not keep the bar busy for ever.
class Straying {
public:
    using Clock = std::chrono::steady_clock;
    // In any period.
    static constexpr int limit = 20;
    static constexpr std::chrono::seconds period{1};

    // The window strayed at `now`. True when it is to be put back, which counts as done then.
    [[nodiscard]] bool putBack(Clock::time_point now = Clock::now());

private:
    Clock::time_point periodBegin_;
    int count_ = limit;
};

} // namespace pelistra::menubar
