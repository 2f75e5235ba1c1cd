#pragma once

#include <chrono>
#include <iosfwd>
#include <string>

namespace pelistra::linux {

// How long a listing may take altogether: somebody waits for it in a terminal.
inline constexpr std::chrono::seconds longestListing{5};

// Writes what the organiser sees in the tray of a display: one line per item in the bar's order, or
// one JSON array of objects. Works under any tray and without a running organiser. `display` is the
// X display's name, empty for $DISPLAY. Returns the exit status: 0, or 1 when the display cannot be
// opened, does not answer in time or has no tray; the reason goes to `err`.
[[nodiscard]] int listItems(std::ostream& out, std::ostream& err, bool json,
                            const std::string& display = {});

} // namespace pelistra::linux
