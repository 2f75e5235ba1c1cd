#pragma once

#include <functional>

namespace pelistra::testing::standins {

// Runs the main run loop until the condition holds; false after ten seconds.
[[nodiscard]] bool runUntil(const std::function<bool()>& condition);
// Runs the main run loop for a while: for what must not happen.
void runFor(double seconds);

} // namespace pelistra::testing::standins
