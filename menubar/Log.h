#pragma once

#include <string_view>

namespace pelistra::menubar {

// Writes one line "pelistra-menubar: ..." to standard error. Whatever comes from a foreign program
// must have gone through cleanText() before.
void log(std::string_view message);

} // namespace pelistra::menubar
