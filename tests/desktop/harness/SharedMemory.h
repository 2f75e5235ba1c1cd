#pragma once

#include <sys/types.h>

namespace pelistra::testing {

// Removes the System V shared memory that a process has made and nobody uses. It outlives its
// maker: some programs take what one of them has left in a crash for another one that runs, and do
// not start, and by their keys one display's rest can be in the way of another's program.
void removeSharedMemoryOf(pid_t maker);

} // namespace pelistra::testing
