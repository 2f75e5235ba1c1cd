#pragma once

#include <array>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <optional>
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

// A variable with another value, or taken away, for as long as this object lives; then it is as
// before.
class Variable {
public:
    // Null takes the variable away.
    Variable(const char* name, const char* value) : name_(name) {
        if (const char* const old = std::getenv(name)) {
            old_ = old;
        }
        set(value);
    }
    Variable(const char* name, const std::string& value) : Variable(name, value.c_str()) {}
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { set(old_ ? old_->c_str() : nullptr); }

private:
    void set(const char* value) const {
        if (value != nullptr) {
            ::setenv(name_, value, 1);
        } else {
            ::unsetenv(name_);
        }
    }

    const char* name_;
    std::optional<std::string> old_;
};

// The name of this machine, as programs give it for the windows that they make on it; empty when it
// has none.
[[nodiscard]] inline std::string hostName() {
    constexpr std::size_t longestName = 256;
    std::array<char, longestName> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

} // namespace pelistra::posix
