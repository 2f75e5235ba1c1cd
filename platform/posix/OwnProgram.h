#pragma once

#include <filesystem>

namespace pelistra::posix {

// The path of the running program; empty when the system does not say.
[[nodiscard]] std::filesystem::path ownProgram();

} // namespace pelistra::posix
