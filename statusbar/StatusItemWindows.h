#pragma once

#include "base/Geometry.h"

#include <optional>
#include <string_view>

namespace pelistra {

class Application;
class WindowList;

// Where the windows of this process's status items are, by the window server's word.
class StatusItemWindows {
public:
    StatusItemWindows(WindowList& windowList, const Application& application)
        : windowList_(windowList), application_(application) {}

    // The frame of the item's window in global coordinates, in points, read afresh. Empty when the
    // window server knows no such window or not where it is: the item is not laid out yet, or the
    // system has hidden it.
    [[nodiscard]] std::optional<Rect> statusWindowFrame(std::string_view named) const;

private:
    WindowList& windowList_;
    const Application& application_;
};

} // namespace pelistra
