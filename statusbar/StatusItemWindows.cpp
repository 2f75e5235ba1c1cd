#include "statusbar/StatusItemWindows.h"

#include "platform/WindowList.h"

#include <algorithm>

namespace pelistra {

std::optional<Rect> StatusItemWindows::statusWindowFrame(std::string_view named) const {
    const auto windows = windowList_.copyWindowInfo();
    if (!windows) {
        return std::nullopt;
    }
    const auto ownPid = application_.processIdentifier();
    const auto window = std::ranges::find_if(*windows, [&](const WindowInfo& info) {
        return info.ownerPid == ownPid && info.layer == statusWindowLayer && info.name == named;
    });
    const auto bounds = window == windows->end() ? std::nullopt : window->bounds;
    if (!bounds) {
        return std::nullopt;
    }
    return makeRect<GlobalSpace>(bounds->x.value_or(0), bounds->y.value_or(0),
                                 bounds->width.value_or(0), bounds->height.value_or(0));
}

} // namespace pelistra
