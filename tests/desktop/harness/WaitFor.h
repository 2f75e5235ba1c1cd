#pragma once

#include <chrono>
#include <concepts>
#include <thread>

namespace pelistra::testing {

// How long a program may take for anything that is not a figure of its own. Generous: sanitizers
// and a busy machine are normal in a test run.
inline constexpr std::chrono::milliseconds patience{15'000};
inline constexpr std::chrono::milliseconds lookInterval{4};

// Looks at `condition` until it holds or `bound` has passed; says whether it held.
template <std::predicate Condition>
[[nodiscard]] bool waitFor(Condition condition, std::chrono::milliseconds bound = patience) {
    const auto end = std::chrono::steady_clock::now() + bound;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) {
            return condition();
        }
        std::this_thread::sleep_for(lookInterval);
    }
    return true;
}

// Asks `look` until it returns a value that is not empty, or `bound` has passed.
template <class Look>
[[nodiscard]] auto waitForValue(Look look, std::chrono::milliseconds bound = patience) {
    auto value = look();
    static_cast<void>(waitFor(
        [&] {
            if (!value) {
                value = look();
            }
            return static_cast<bool>(value);
        },
        bound));
    return value;
}

// True when `condition` held at every look until `bound` had passed: the proof that something does
// not happen.
template <std::predicate Condition>
[[nodiscard]] bool staysTrue(Condition condition, std::chrono::milliseconds bound) {
    return !waitFor([&] { return !condition(); }, bound);
}

} // namespace pelistra::testing
