#pragma once

#include <string_view>

namespace pelistra::status_item_names {

// Under these names the menu bar remembers our two items, and the window server reports their
// windows.
inline constexpr std::string_view control = "PelistraV3.Control";
inline constexpr std::string_view divider = "PelistraV3.Divider";

} // namespace pelistra::status_item_names
