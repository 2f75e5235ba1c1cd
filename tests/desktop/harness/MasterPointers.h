#pragma once

#include "tests/desktop/harness/XClient.h"

#include <string>
#include <vector>

namespace pelistra::testing {

// Names of the pointers that an X server has now: the user's own, and what programs have made.
// Throws std::runtime_error when the server does not say.
[[nodiscard]] std::vector<std::string> masterPointers(XClient& client);

} // namespace pelistra::testing
