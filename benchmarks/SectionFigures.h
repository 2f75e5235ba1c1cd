#pragma once

#include "benchmarks/Figure.h"
#include "benchmarks/Measuring.h"

namespace pelistra::testing {

// How fast the section collapses, and what the bar's layout costs with many icons.
[[nodiscard]] Section sectionFigures(const Effort& effort);

} // namespace pelistra::testing
