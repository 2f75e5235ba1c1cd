#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace pelistra::testing {

// All bytes of the file as it is now; empty when it cannot be read.
[[nodiscard]] inline std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace pelistra::testing
