#pragma once

#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string>

#include <unistd.h>

namespace pelistra::posix {

// The environment as it is now. Only the main thread changes it.

// The value of a variable; empty when it is unset.
[[nodiscard]] inline std::string environmentText(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

// The path in a variable; empty when it is unset or no absolute path, which the XDG rules take for
// unset.
[[nodiscard]] inline std::filesystem::path environmentPath(const char* name) {
    const std::filesystem::path path = environmentText(name);
    return path.is_absolute() ? path : std::filesystem::path();
}

// The name of this machine, as programs give it for the windows that they make on it; empty when it
// has none.
[[nodiscard]] inline std::string hostName() {
    constexpr std::size_t longestName = 256;
    std::array<char, longestName> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

} // namespace pelistra::posix
