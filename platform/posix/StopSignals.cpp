#include "platform/posix/StopSignals.h"

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

namespace pelistra {

namespace {

constexpr std::array numbers{SIGINT, SIGTERM, SIGHUP};

// A signal handler gets no argument of ours, so what it writes to has to stand here.
std::atomic<int> wakeDescriptor{-1};

void noteSignal(int /*number*/) {
    const int savedError = errno;
    const std::uint64_t one = 1;
    static_cast<void>(::write(wakeDescriptor.load(), &one, sizeof one) == sizeof one);
    errno = savedError;
}

} // namespace

StopSignals::StopSignals() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (descriptor_ < 0) {
        return;
    }
    wakeDescriptor = descriptor_;
    struct sigaction action{};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        ::sigaction(numbers.at(index), &action, &before_.at(index));
    }
}

StopSignals::~StopSignals() {
    if (descriptor_ < 0) {
        return;
    }
    for (std::size_t index = 0; index < numbers.size(); ++index) {
        ::sigaction(numbers.at(index), &before_.at(index), nullptr);
    }
    wakeDescriptor = -1;
    ::close(descriptor_);
}

} // namespace pelistra
