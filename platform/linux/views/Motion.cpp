#include "platform/linux/views/Motion.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <variant>

namespace pelistra::linux {

namespace {

// A spring counts as at rest once it stays this near to its end.
constexpr double restDistance = 0.001;

struct ProgressAfter {
    double seconds;

    double operator()(const ui::EaseOut& ease) const {
        if (seconds >= ease.seconds) {
            return 1;
        }
        const double left = 1 - (std::max(seconds, 0.0) / ease.seconds);
        return 1 - (left * left * left);
    }

    // The closed form of a damped oscillation that starts at rest one unit from its end.
    double operator()(const ui::Spring& spring) const {
        const double frequency = 2 * std::numbers::pi / spring.response;
        const double damping = std::min(spring.dampingFraction, 1.0);
        const double decay = std::exp(-damping * frequency * seconds);
        if (damping >= 1) {
            return 1 - (decay * (1 + (frequency * seconds)));
        }
        const double root = std::sqrt(1 - (damping * damping));
        const double phase = frequency * root * seconds;
        return 1 - (decay * (std::cos(phase) + ((damping / root) * std::sin(phase))));
    }
};

struct Duration {
    double operator()(const ui::EaseOut& ease) const { return ease.seconds; }
    double operator()(const ui::Spring& spring) const {
        const double decay =
            std::min(spring.dampingFraction, 1.0) * 2 * std::numbers::pi / spring.response;
        return -std::log(restDistance) / decay;
    }
};

} // namespace

double progressAfter(const ui::Animation& animation, double seconds) {
    return std::visit(ProgressAfter{seconds}, animation);
}

double durationOf(const ui::Animation& animation) {
    return std::visit(Duration(), animation);
}

void Motion::advanceTo(Clock::time_point now) {
    const double seconds = std::chrono::duration<double>(now - begin_).count();
    hasEnded_ = seconds >= durationOf(animation_);
    progress_ = hasEnded_ ? 1 : progressAfter(animation_, seconds);
}

} // namespace pelistra::linux
