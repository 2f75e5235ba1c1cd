#pragma once

#include <string_view>

namespace pelistra {

// The user-defaults database of the application. A write that cannot be kept is logged by the
// implementation and still read back until the process ends.
class UserDefaults {
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    // Whether any value, of whatever type, stands under the key.
    [[nodiscard]] virtual bool hasObject(std::string_view key) const = 0;
    // The Boolean under the key; false when there is none or it is not one.
    [[nodiscard]] virtual bool boolForKey(std::string_view key) const = 0;
    // Each puts its value under the key, in the place of whatever stood there.
    virtual void setBool(bool value, std::string_view key) = 0;
    virtual void setNumber(double value, std::string_view key) = 0;
};

} // namespace pelistra
