#include "platform/posix/StopSignals.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>

#include <sys/eventfd.h>
#include <unistd.h>

namespace pelistra::posix {

namespace {

constexpr std::array numbers{SIGINT, SIGTERM, SIGHUP};

// A signal handler gets no argument of ours, so what it needs has to stand here.
std::atomic<int> wakeDescriptor{-1};
std::atomic<timer_t> deadline{};

void noteSignal(int /*number*/) {
    const int savedError = errno;
    const std::uint64_t one = 1;
    static_cast<void>(::write(wakeDescriptor.load(), &one, sizeof one) == sizeof one);
    using std::chrono::nanoseconds;
    constexpr auto seconds = std::chrono::floor<std::chrono::seconds>(StopSignals::patience);
    constexpr nanoseconds rest = StopSignals::patience - seconds;
    const itimerspec once{.it_interval = {}, .it_value = {seconds.count(), rest.count()}};
    itimerspec running{};
    // A second signal gives no further time.
    if (::timer_gettime(deadline.load(), &running) == 0 && running.it_value.tv_sec == 0 &&
        running.it_value.tv_nsec == 0) {
        ::timer_settime(deadline.load(), 0, &once, nullptr);
    }
    errno = savedError;
}

void endNow(int /*number*/) {
    ::_exit(EXIT_SUCCESS);
}

// Returns how it was handled before.
struct sigaction handle(int number, void (*handler)(int)) {
    struct sigaction action{};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    struct sigaction before{};
    ::sigaction(number, &action, &before);
    return before;
}

} // namespace

StopSignals::StopSignals() : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    for (const int number : numbers) {
        // Who starts a program that way, as nohup does, wants it to go on.
        struct sigaction present{};
        if (::sigaction(number, nullptr, &present) != 0 || present.sa_handler != SIG_IGN) {
            take(number, endNow);
        }
    }
    sigevent event{};
    // To this thread alone: it holds the signal off while it writes a file.
    event.sigev_notify = SIGEV_THREAD_ID;
    event._sigev_un._tid = ::gettid();
    event.sigev_signo = SIGALRM;
    timer_t timer{};
    if (::timer_create(CLOCK_MONOTONIC, &event, &timer) == 0) {
        timer_ = timer;
    }
}

StopSignals::~StopSignals() {
    for (const auto& [number, before] : before_) {
        ::sigaction(number, &before, nullptr);
    }
    wakeDescriptor = -1;
    if (timer_) {
        ::timer_delete(*timer_);
    }
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

void StopSignals::begin() {
    if (descriptor_ < 0 || !timer_) {
        return;
    }
    wakeDescriptor = descriptor_;
    deadline = *timer_;
    for (const auto& [number, before] : before_) {
        handle(number, noteSignal);
    }
    take(SIGALRM, endNow);
}

void StopSignals::take(int number, Handler handler) {
    before_[number] = handle(number, handler);
}

} // namespace pelistra::posix
