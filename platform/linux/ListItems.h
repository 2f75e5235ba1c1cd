#pragma once

#include <iosfwd>
#include <string>

namespace pelistra::desktop {

// Writes what the organiser sees in the tray of a display: one line per item in the bar's order, or
// one JSON array of objects. Works under any tray and without a running organiser. `display` is the
// X display's name, empty for $DISPLAY. Returns the exit status: 0, or 1 when the display cannot be
// opened, does not answer or has no tray; the reason goes to `err`.
[[nodiscard]] int listItems(std::ostream& out, std::ostream& err, bool json,
                            const std::string& display = {});

} // namespace pelistra::desktop
