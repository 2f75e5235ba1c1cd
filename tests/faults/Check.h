#pragma once

#include "tests/faults/Bench.h"

#include <string>
#include <vector>

namespace pelistra::testing {

// What is not as it must be once something went wrong and was put right; empty when all is well. It
// uses the desktop: collapses, opens the row, expands.
[[nodiscard]] std::vector<std::string> complaintsOf(Bench& bench);

// What a program has written that only a broken one writes; empty when there is nothing.
[[nodiscard]] std::string reportIn(const std::string& output);

// The children of a process that have ended and wait for it to notice.
[[nodiscard]] int zombiesOf(pid_t process);

} // namespace pelistra::testing
