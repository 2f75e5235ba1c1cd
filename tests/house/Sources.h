#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace pelistra::testing {

// The folders of the core.
[[nodiscard]] const std::vector<std::string>& coreFolders();

// The .h and .cpp files below a folder, sorted; empty when there is no such folder.
[[nodiscard]] std::vector<std::filesystem::path> sourcesBelow(const std::filesystem::path& folder);

// The whole content of a file; throws std::runtime_error when it cannot be read.
[[nodiscard]] std::string contentOf(const std::filesystem::path& file);
[[nodiscard]] std::vector<std::string> linesOf(const std::string& text);

} // namespace pelistra::testing
