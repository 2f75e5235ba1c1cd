#pragma once

#include <set>
#include <string>

namespace pelistra::testing {

// The switches ("--like-this") that a text names.
[[nodiscard]] std::set<std::string> switchesIn(const std::string& text);

// The same for a README: lines that call somebody else's program (cmake, ctest, apt-get, git) are
// left out.
[[nodiscard]] std::set<std::string> switchesInReadme(const std::string& text);

} // namespace pelistra::testing
