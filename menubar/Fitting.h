#pragma once

#include "menubar/Artwork.h"

namespace pelistra::menubar {

// Scales a picture down so that it fits into a square of `side` device pixels, or up by a whole
// number, which keeps its edges sharp. Its proportions stay.
[[nodiscard]] ArgbImage fitted(ArgbImage image, int side);

} // namespace pelistra::menubar
