#pragma once

#include "tests/desktop/harness/XClient.h"

#include <map>
#include <string>
#include <vector>

#include <sys/types.h>

struct sd_bus;

namespace pelistra::testing {

// How many of each kind a process holds: file descriptors, children, names on the session bus, and
// what the X server keeps for its connections ("WINDOW", "PIXMAP", "GC", ...).
using Holdings = std::map<std::string, long>;

// Throws std::runtime_error when the process is gone, or the server or the bus does not say.
[[nodiscard]] Holdings holdingsOf(pid_t process, XClient& client, sd_bus& bus);

// What there is more of now than before: "PIXMAP 12 -> 13".
[[nodiscard]] std::vector<std::string> growth(const Holdings& before, const Holdings& now);

} // namespace pelistra::testing
