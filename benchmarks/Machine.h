#pragma once

#include <string>

namespace pelistra::testing {

// What the figures were taken on, a line each: date, processor, memory, system, versions.
[[nodiscard]] std::string describeMachine();

// How busy the machine has been for the last minutes.
[[nodiscard]] std::string describeLoad();

} // namespace pelistra::testing
