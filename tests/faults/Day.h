#pragma once

#include <chrono>
#include <string>

namespace pelistra::testing {

// Lives the same day over and over for that long, at least twice: programs come and go, icons
// change, the section is collapsed and expanded, the row and menus are opened and closed, windows,
// monitors and themes come and go, programs stand still for a while. Compares what bar and
// organiser hold at the end with what they held after the first minute, or after the first day when
// that is all; prints a line for each day. False when they hold more, or something broke.
[[nodiscard]] bool liveDays(std::chrono::minutes length);

// Be a program with two icons, a window and one on the session bus, that change all the time and
// have a menu, until somebody kills it.
int beRestless(const std::string& name);

} // namespace pelistra::testing
