#pragma once

#include "benchmarks/Figure.h"
#include "benchmarks/Measuring.h"

namespace pelistra::testing {

// The second row: how fast it is on the screen, how smoothly it scrolls, what it repaints.
[[nodiscard]] Section rowFigures(const Effort& effort);

// Whether memory stays where it was over many openings.
[[nodiscard]] Section rowMemoryFigures(const Effort& effort);

} // namespace pelistra::testing
