#pragma once

#include "benchmarks/Figure.h"
#include "benchmarks/Measuring.h"

namespace pelistra::testing {

// Ours beside what a user would pick instead, on private displays of the same kind, with the same
// third-party icons. Products that are not installed are left out.
[[nodiscard]] Comparison rivalFigures(const Effort& effort);

} // namespace pelistra::testing
