#pragma once

#include "platform/linux/icons/TrayQuestions.h"

#include <vector>

namespace pelistra::linux {

// The icons that are embedded in a tray now, whoever runs it. Our own bar publishes its items in
// their order; under any other tray the embedded windows are found among the children of the
// tray's own windows and ordered by their place. A fixed number of round trips, whatever the number
// of icons. A window that goes away meanwhile is missing, nothing else.
[[nodiscard]] std::vector<TrayIcon> readIcons(TrayQuestions& questions, const TrayFacts& tray);

} // namespace pelistra::linux
