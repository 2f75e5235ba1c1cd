#pragma once

#include "benchmarks/Figure.h"
#include "benchmarks/Measuring.h"

namespace pelistra::testing {

// What the organiser's looks at the tray cost: one at 1,000 icons, and the pictures of 50.
[[nodiscard]] Section trayReaderFigures(const Effort& effort);

} // namespace pelistra::testing
