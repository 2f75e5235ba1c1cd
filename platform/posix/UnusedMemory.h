#pragma once

#include <chrono>

namespace pelistra::posix {

// By then a start has come to rest, and what only the start needed can go.
inline constexpr std::chrono::seconds afterStart{2};

// Gives back to the system what this process has in memory and does not use: freed heap, and the
// pages of code and constants, of which most have served for a start or a window alone. Those that
// are needed after all come back one by one from the system's cache of files.
void giveBackUnusedMemory();

} // namespace pelistra::posix
