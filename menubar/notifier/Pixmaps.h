#pragma once

#include "menubar/Artwork.h"

#include <optional>

#include <systemd/sd-bus.h>

namespace pelistra::menubar {

// Pictures that a program sends over the bus: several sizes of one, 32-bit pixels in network byte
// order without premultiplied alpha.

// No picture of an icon is larger, in pixels to a side.
inline constexpr int longestPixmapSide = 1024;

// Reads the list of pictures (of type a(iiay)) that comes next in the message and takes the one
// that looks best in a square of `side` device pixels, fitted; an empty image when none can be
// used. Empty when there are more than a program has reason to send, or it is no such list; the
// rest of the message cannot be read then.
[[nodiscard]] std::optional<ArgbImage> readPixmaps(sd_bus_message& message, int side);

} // namespace pelistra::menubar
