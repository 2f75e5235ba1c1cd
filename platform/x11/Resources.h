#pragma once

#include <optional>
#include <string_view>

namespace pelistra::x11 {

// The resolution at which one point is one device pixel, in dots per inch: what X desktops take for
// an unscaled screen.
inline constexpr double unscaledResolution = 96;

// The resolution that the user wants for texts, in dots per inch: the number in the entry Xft.dpi
// of the resource database (the property RESOURCE_MANAGER of the root window). Empty when there is
// no such entry, or when the first one holds no positive number.
[[nodiscard]] std::optional<double> textResolutionIn(std::string_view resourceDatabase);

} // namespace pelistra::x11
