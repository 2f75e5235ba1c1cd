#pragma once

#include "platform/Window.h"
#include "platform/linux/views/ViewServices.h"
#include "platform/linux/windows/UnusedMemory.h"
#include "platform/x11/Connection.h"

#include <utility>

namespace pelistra::linux {

// Ordinary windows on Qt Widgets.
class QtWindows final : public Windows {
public:
    // What the services name outlives the windows, and so does the connection.
    QtWindows(ViewServices services, const x11::Connection& connection)
        : services_(std::move(services)), connection_(connection),
          unusedMemory_(services_.mainQueue) {}

    [[nodiscard]] std::unique_ptr<Window> window(Size contentSize,
                                                 std::uint32_t styleMask) override;

private:
    ViewServices services_;
    const x11::Connection& connection_;
    UnusedMemory unusedMemory_;
};

} // namespace pelistra::linux
