#include "platform/linux/TerminationSignals.h"

#include <atomic>
#include <cerrno>
#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

namespace pelistra::desktop {

namespace {

// A signal handler gets no argument of ours, so what it writes to has to stand here.
std::atomic<int> wakeDescriptor{-1};

void noteSignal(int /*number*/) {
    const int savedError = errno;
    const std::uint64_t one = 1;
    static_cast<void>(::write(wakeDescriptor.load(), &one, sizeof one) == sizeof one);
    errno = savedError;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> handler)
    : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      notifier_(descriptor_, QSocketNotifier::Read) {
    QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
                     [descriptor = descriptor_, handler = std::move(handler)] {
                         std::uint64_t count = 0;
                         if (::read(descriptor, &count, sizeof count) == sizeof count) {
                             handler();
                         }
                     });
    wakeDescriptor = descriptor_;
    struct sigaction action{};
    action.sa_handler = noteSignal;
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, &previousInterrupt_);
    sigaction(SIGTERM, &action, &previousTerminate_);
}

TerminationSignals::~TerminationSignals() {
    sigaction(SIGINT, &previousInterrupt_, nullptr);
    sigaction(SIGTERM, &previousTerminate_, nullptr);
    wakeDescriptor = -1;
    ::close(descriptor_);
}

} // namespace pelistra::desktop
