#pragma once

#include "base/Geometry.h"
#include "platform/Image.h"
#include "platform/WindowList.h"

#include <optional>
#include <string>

namespace pelistra {

// One menu-bar window as the window server reports it.
struct PrivateMenuBarWindow {
    WindowId id = 0;
    ProcessId ownerPID = 0;
    std::string ownerName;
    // Empty when the window server reports none.
    std::string windowName;
    std::optional<std::string> bundleIdentifier;
    // In points, as reported.
    Rect frame;
    // Null when the owner is no running application or has no icon.
    ImagePtr applicationIcon;

    bool operator==(const PrivateMenuBarWindow&) const = default;
};

} // namespace pelistra
