#pragma once

#include <array>

#include <csignal>

namespace pelistra {

// SIGINT, SIGTERM and SIGHUP as something to wait for beside other descriptors, as long as this
// object lives, so that a program can end in order. There is at most one. Signals stay unblocked,
// so that programs started from here begin with their usual ones.
class StopSignals {
public:
    StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;
    ~StopSignals();

    // Readable from the first signal on; -1 when the system could not make it.
    [[nodiscard]] int fileDescriptor() const { return descriptor_; }

private:
    int descriptor_;
    std::array<struct sigaction, 3> before_{};
};

} // namespace pelistra
