#pragma once

#include "benchmarks/Figure.h"
#include "benchmarks/Measuring.h"

namespace pelistra::testing {

// Settings and onboarding: how fast they are on the screen.
[[nodiscard]] Section windowFigures(const Effort& effort);

// What memory they leave behind, and whether it grows.
[[nodiscard]] Section windowMemoryFigures(const Effort& effort);

} // namespace pelistra::testing
