#pragma once

#include "platform/x11/Connection.h"

#include <optional>

namespace pelistra::linux {

// What resourceScaleIn() reads in the resource database that the root window holds now; one round
// trip. Empty when there is none, too.
[[nodiscard]] std::optional<double> resourceScale(const x11::Connection& connection);

} // namespace pelistra::linux
