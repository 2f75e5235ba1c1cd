#pragma once

namespace pelistra::posix {

// Takes the code and the constants of this program and its libraries out of the process's memory,
// as a long sleep on a full machine would: what is used again comes back by itself from the file,
// or from the system's cache of it, 64 KiB at a time. Worth it once what has just been done, as a
// start, is not done again soon. Breakpoints of a debugger in that code are lost.
void releaseProgramPages();

} // namespace pelistra::posix
