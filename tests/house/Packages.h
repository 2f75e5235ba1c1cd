#pragma once

#include <string>
#include <vector>

namespace pelistra::testing {

// What is wrong with a list of packages: lines that are no package name, that stand twice, or that
// stand out of order (in the order of their bytes). Empty for a good list.
[[nodiscard]] std::vector<std::string> faultsOfPackageList(const std::string& text);

} // namespace pelistra::testing
