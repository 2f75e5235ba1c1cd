#pragma once

#include "platform/linux/loop/Source.h"
#include "tests/desktop/harness/WaitFor.h"

#include <chrono>

namespace pelistra::testing {

// Runs GLib's default main context until the condition holds, but no longer than a test waits.
// Asks only after something was dispatched, so what is waited for has to wake the loop.
template <class Condition>
[[nodiscard]] bool runUntil(Condition condition) {
    bool isLate = false;
    const linux::SourcePtr end = linux::timedSource([&isLate] { isLate = true; });
    g_source_set_ready_time(
        end.get(), g_get_monotonic_time() +
                       std::chrono::duration_cast<std::chrono::microseconds>(patience).count());
    while (!condition() && !isLate) {
        g_main_context_iteration(nullptr, TRUE);
    }
    return condition();
}

} // namespace pelistra::testing
