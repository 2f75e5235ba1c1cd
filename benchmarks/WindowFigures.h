#pragma once

#include "benchmarks/Figure.h"
#include "benchmarks/Measuring.h"

namespace pelistra::testing {

// Settings and onboarding: how fast they are on the screen, and what memory they leave behind.
[[nodiscard]] Section windowFigures(const Effort& effort);

} // namespace pelistra::testing
