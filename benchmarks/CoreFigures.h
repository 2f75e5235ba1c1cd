#pragma once

#include "benchmarks/Figure.h"
#include "benchmarks/Measuring.h"

namespace pelistra::testing {

// The functions that need no display: the bar's layout, the row's, the refresh of the list of
// hidden icons.
[[nodiscard]] Section coreFigures(const Effort& effort);

} // namespace pelistra::testing
