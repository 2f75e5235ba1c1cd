#pragma once

#include "platform/linux/views/Look.h"
#include "platform/x11/XSettings.h"

namespace pelistra::linux {

// The look that the desktop's settings ask for: a theme whose name says that it is dark, animations
// switched off, and the desktop's font. What they do not say is as in Look().
[[nodiscard]] Look lookOf(const x11::XSettings& settings);

} // namespace pelistra::linux
