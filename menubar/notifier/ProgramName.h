#pragma once

#include <string>

#include <sys/types.h>

namespace pelistra::menubar {

// What the program of a process is called, clean: "solaar", also for a script. Empty when the
// process is gone, or when its name says only by what it is run (an interpreter, a sandbox).
[[nodiscard]] std::string programName(pid_t process);

} // namespace pelistra::menubar
