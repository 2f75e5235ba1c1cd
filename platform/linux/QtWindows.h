#pragma once

#include "platform/Window.h"
#include "platform/linux/views/ViewServices.h"

namespace pelistra::desktop {

// Ordinary windows on Qt Widgets.
class QtWindows final : public Windows {
public:
    // What the services name outlives the windows.
    explicit QtWindows(const ViewServices& services) : services_(services) {}

    [[nodiscard]] std::unique_ptr<Window> window(Size contentSize,
                                                 std::uint32_t styleMask) override;

private:
    ViewServices services_;
};

} // namespace pelistra::desktop
