#pragma once

#include "platform/Window.h"
#include "platform/macos/views/HostingServices.h"

namespace pelistra::macos {

// Ordinary windows, each with its NSWindowController.
class AppKitWindows final : public Windows {
public:
    explicit AppKitWindows(const HostingServices& services) : services_(services) {}

    [[nodiscard]] std::unique_ptr<Window> window(Size contentSize,
                                                 std::uint32_t styleMask) override;

private:
    HostingServices services_;
};

} // namespace pelistra::macos
