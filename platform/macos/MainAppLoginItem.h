#pragma once

#include "platform/LoginItem.h"

namespace pelistra::macos {

// The main application's login item, by SMAppService. From a read-only place it is not registered,
// which the system would do.
class MainAppLoginItem final : public LoginItem {
public:
    [[nodiscard]] LoginItemStatus status() const override;
    [[nodiscard]] std::optional<std::string> registerItem() override;
    [[nodiscard]] std::optional<std::string> unregisterItem() override;
};

} // namespace pelistra::macos
