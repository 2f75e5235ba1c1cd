#pragma once

#include "platform/Application.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pelistra {

// A window number of the window server (CGWindowID on macOS, the X window id on X11).
using WindowId = std::uint32_t;

// The layer that status-item windows live on (kCGStatusWindowLevel).
inline constexpr std::int64_t statusWindowLayer = 25;

// Global coordinates in points. A member that the window server did not report is empty.
struct WindowBounds {
    std::optional<double> x;
    std::optional<double> y;
    std::optional<double> width;
    std::optional<double> height;

    bool operator==(const WindowBounds&) const = default;
};

// One window as the window server describes it. A value that is missing, or of another type than
// expected, is empty.
struct WindowInfo {
    std::optional<WindowId> number;
    std::optional<ProcessId> ownerPid;
    std::optional<std::string> ownerName;
    std::optional<std::string> name;
    std::optional<std::int64_t> layer;
    std::optional<WindowBounds> bounds;

    bool operator==(const WindowInfo&) const = default;
};

// The window server's list of every window there is.
class WindowList {
public:
    WindowList() = default;
    WindowList(const WindowList&) = delete;
    WindowList& operator=(const WindowList&) = delete;
    virtual ~WindowList() = default;

    // Afresh at every call, in the window server's order; empty optional when it gives no answer.
    [[nodiscard]] virtual std::optional<std::vector<WindowInfo>> copyWindowInfo() = 0;
};

} // namespace pelistra
