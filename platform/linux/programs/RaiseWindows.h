#pragma once

#include "platform/Application.h"
#include "platform/WindowList.h"

#include <functional>
#include <string>

namespace pelistra::linux {

// Brings the newest of the managed windows whose process passes the test to the front and gives it
// the focus, through the window manager and as a pager would ask for it: from another desktop and
// from its minimised state too; the other windows of those processes are raised with it. Docks,
// desktops and windows that are in no taskbar do not count. `display` is the X display's name,
// empty for $DISPLAY. False when there is no such window, no window manager, or no answer in time.
[[nodiscard]] bool raiseWindows(const std::string& display,
                                const std::function<bool(ProcessId process)>& isWanted);

} // namespace pelistra::linux
