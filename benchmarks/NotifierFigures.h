#pragma once

#include "benchmarks/Figure.h"
#include "benchmarks/Measuring.h"

namespace pelistra::testing {

// What icons of the session bus cost the bar, and how soon they answer.
[[nodiscard]] Section notifierFigures(const Effort& effort);

// The same beside other trays that show such icons. Products that are not installed are left out.
[[nodiscard]] Comparison notifierRivals(const Effort& effort);

} // namespace pelistra::testing
