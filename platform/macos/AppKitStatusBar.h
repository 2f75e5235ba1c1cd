#pragma once

#include "platform/StatusBar.h"

namespace pelistra::appkit {

// The system's menu bar, by NSStatusBar.
class AppKitStatusBar final : public StatusBar {
public:
    [[nodiscard]] std::unique_ptr<StatusItem> statusItem(double withLength) override;
};

} // namespace pelistra::appkit
