#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace pelistra::testing {

// The calls in a source text that wait for the X server as long as it likes.
[[nodiscard]] std::vector<std::string> endlessWaits(const std::string& sourceText);

// The same for the whole product below the tree's top, as "file: call". The connection itself may
// make such calls, where it knows that they do not have to wait.
[[nodiscard]] std::vector<std::string> endlessWaitsOfTree(const std::filesystem::path& top);

} // namespace pelistra::testing
