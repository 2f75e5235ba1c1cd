#pragma once

#include "platform/UserDefaults.h"

namespace pelistra::macos {

// The application's user-defaults database; the system writes it to disk on its own.
class StandardUserDefaults final : public UserDefaults {
public:
    [[nodiscard]] bool hasObject(std::string_view key) const override;
    [[nodiscard]] bool boolForKey(std::string_view key) const override;
    void setBool(bool value, std::string_view key) override;
    void setNumber(double value, std::string_view key) override;
};

} // namespace pelistra::macos
