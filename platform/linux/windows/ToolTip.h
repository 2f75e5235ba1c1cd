#pragma once

#include "platform/linux/screens/Coordinates.h"

#include <memory>
#include <string_view>

class QLabel;

namespace pelistra::linux {

// Where a tooltip goes, in device pixels: its centre below that of the item, or above it where
// there is no room, all of it on the monitor.
[[nodiscard]] RootRect toolTipFrame(int width, int height, const RootRect& item,
                                    const RootRect& monitor, int gap);

// A window with a plain text for an item whose frame is in root pixels.
[[nodiscard]] std::unique_ptr<QLabel> shownToolTip(std::string_view text, const RootRect& item,
                                                   bool onDark);

} // namespace pelistra::linux
