#pragma once

#include "ui/Animation.h"

#include <chrono>

namespace pelistra::linux {

// How far an animation has come after some seconds: 0 at its begin, 1 at its end; a spring may
// go a little beyond 1 in between.
[[nodiscard]] double progressAfter(const ui::Animation& animation, double seconds);

// When nothing moves visibly any more, in seconds.
[[nodiscard]] double durationOf(const ui::Animation& animation);

// One animated change, shared by everything that moves in it. Ended once its duration is over.
class Motion {
public:
    using Clock = std::chrono::steady_clock;

    Motion(const ui::Animation& animation, Clock::time_point begin)
        : animation_(animation), begin_(begin) {}

    // Sets the moment that progress() is for.
    void advanceTo(Clock::time_point now);
    [[nodiscard]] double progress() const { return progress_; }
    [[nodiscard]] bool hasEnded() const { return hasEnded_; }

private:
    ui::Animation animation_;
    Clock::time_point begin_;
    double progress_ = 0;
    bool hasEnded_ = false;
};

} // namespace pelistra::linux
