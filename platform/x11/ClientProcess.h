#pragma once

#include "platform/x11/Connection.h"

#include <cstdint>
#include <optional>

namespace pelistra::x11 {

// The process that made the window, as the server knows it (X-Resource); empty when it does not.
// One round trip.
[[nodiscard]] std::optional<std::uint32_t> processOf(const Connection& connection,
                                                     xcb_window_t window);

} // namespace pelistra::x11
