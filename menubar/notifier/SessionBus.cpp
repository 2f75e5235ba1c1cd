#include "menubar/notifier/SessionBus.h"

#include "menubar/Log.h"
#include "platform/posix/Environment.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace pelistra::menubar {

namespace {

// So many messages are handled before the X server has its turn again.
constexpr int mostAtOnce = 64;

// Whether a failure is one that time can mend.
bool isConnecting(int result) {
    return result == -ENOENT || result == -ECONNREFUSED || result == -ECONNRESET ||
           result == -EAGAIN || result == -EPIPE;
}

} // namespace

pollfd SessionBus::descriptor() const {
    if (bus_ == nullptr) {
        return {.fd = -1, .events = 0, .revents = 0};
    }
    return {.fd = sd_bus_get_fd(bus_.get()),
            .events = static_cast<short>(std::max(sd_bus_get_events(bus_.get()), 0)),
            .revents = 0};
}

std::optional<SessionBus::Clock::time_point> SessionBus::due() const {
    std::uint64_t microseconds = 0;
    if (bus_ == nullptr || sd_bus_get_timeout(bus_.get(), &microseconds) <= 0 ||
        microseconds == UINT64_MAX) {
        return retryAt_;
    }
    return Clock::time_point(std::chrono::microseconds(microseconds));
}

bool SessionBus::process() {
    if (bus_ == nullptr) {
        if (!retryAt_ || Clock::now() < *retryAt_) {
            return false;
        }
        open();
    }
    int handled = 0;
    while (bus_ != nullptr && handled < mostAtOnce) {
        const int result = sd_bus_process(bus_.get(), nullptr);
        if (result < 0) {
            lose();
            return true;
        }
        if (!ready_ && sd_bus_is_ready(bus_.get()) > 0) {
            ready_ = true;
            complained_ = false;
            retryAfter_ = firstRetry;
            changed_(bus_.get());
        }
        if (result == 0) {
            break;
        }
        ++handled;
    }
    return handled > 0;
}

void SessionBus::open() {
    retryAt_.reset();
    if (posix::environmentText("DBUS_SESSION_BUS_ADDRESS") == "disabled:") {
        return;
    }
    sd_bus* bus = nullptr;
    const int result = sd_bus_open_user_with_description(&bus, "pelistra-menubar");
    bus_.reset(bus);
    if (result >= 0) {
        return;
    }
    if (isConnecting(result)) {
        lose();
    } else {
        // The environment names no bus, and that does not change while we run.
        log("there is no session bus: only icons that are windows are shown");
    }
}

void SessionBus::lose() {
    bus_.reset();
    if (!std::exchange(complained_, true)) {
        log("the session bus does not answer: only icons that are windows are shown until it does");
    }
    if (std::exchange(ready_, false)) {
        changed_(nullptr);
    }
    retryAt_ = Clock::now() + retryAfter_;
    retryAfter_ = std::min(retryAfter_ * 2, lastRetry);
}

} // namespace pelistra::menubar
