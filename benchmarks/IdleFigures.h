#pragma once

#include "benchmarks/Figure.h"
#include "benchmarks/Measuring.h"

namespace pelistra::testing {

// What both programs cost while nothing happens: memory, wake-ups, system calls, processor time.
[[nodiscard]] Section idleFigures(const Effort& effort);

} // namespace pelistra::testing
