#pragma once

#include <cstdio>
#include <cstdlib>

namespace pelistra {

// Ends the process at once, with the reason on standard error: a rule that the program rests on
// does not hold, and going on would act on wrong data.
[[noreturn]] inline void fatalError(const char* reason) {
    std::fprintf(stderr, "Fatal error: %s\n", reason);
    std::abort();
}

} // namespace pelistra
