#pragma once

#include "platform/linux/screens/Coordinates.h"
#include "platform/x11/Connection.h"

#include <optional>

namespace pelistra::linux {

// Where a window is now, in root pixels, without its border; one round trip. Empty when it is gone.
[[nodiscard]] std::optional<RootRect> rootFrameOf(const x11::Connection& connection,
                                                  xcb_window_t window);

} // namespace pelistra::linux
