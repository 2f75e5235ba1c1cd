#pragma once

#include "platform/WindowList.h"
#include "platform/linux/clicks/PointerDevice.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Replies.h"

#include <vector>

namespace pelistra::linux {

// A window is rarely this deep in the tree; the bound keeps a search from going on for ever while
// windows move.
inline constexpr int deepestWindow = 32;

// The windows that a click at that place would meet, from the child of the root inwards. Works
// inside a task of the Replies object.
[[nodiscard]] std::vector<WindowId> windowsAt(const x11::Connection& connection,
                                              x11::Replies& replies, RootPlace place);

} // namespace pelistra::linux
