#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace pelistra {

// Raw values of SMAppServiceStatus.
enum class LoginItemStatus : std::uint8_t {
    NotRegistered = 0,
    Enabled = 1,
    // Registered, but the user or the system holds it back.
    RequiresApproval = 2,
    NotFound = 3,
};

// The registration of this application with the system, as something to start at login. The
// system's registration is the only truth: nothing is remembered here.
class LoginItem {
public:
    LoginItem() = default;
    LoginItem(const LoginItem&) = delete;
    LoginItem& operator=(const LoginItem&) = delete;
    virtual ~LoginItem() = default;

    // Asked afresh at every call.
    [[nodiscard]] virtual LoginItemStatus status() const = 0;

    // Each changes the registration and answers empty when it succeeded, else a description of what
    // went wrong in the user's language, the system's own where it has one; that may be an empty
    // text.
    [[nodiscard]] virtual std::optional<std::string> registerItem() = 0;
    [[nodiscard]] virtual std::optional<std::string> unregisterItem() = 0;
};

} // namespace pelistra
