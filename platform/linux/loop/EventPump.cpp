#include "platform/linux/loop/EventPump.h"

#include <string>
#include <utility>

#include <poll.h>

namespace pelistra::linux {

struct EventPump::Source {
    GSource base;
    EventPump* pump;
    gpointer descriptor;
};

EventPump::Source& EventPump::sourceOf(GSource* source) {
    return *reinterpret_cast<Source*>(source);
}

EventPump::EventPump(x11::Connection& connection, LogSink& log)
    : connection_(connection), logger_(log, "x11") {
    static GSourceFuncs functions{
        .prepare = [](GSource* source, gint* /*timeout*/) -> gboolean {
            return sourceOf(source).pump->isReady() ? TRUE : FALSE;
        },
        .check = [](GSource* source) -> gboolean {
            const Source& own = sourceOf(source);
            return g_source_query_unix_fd(source, own.descriptor) != 0 || own.pump->isReady()
                       ? TRUE
                       : FALSE;
        },
        .dispatch = [](GSource* source, GSourceFunc /*callback*/, gpointer /*data*/) -> gboolean {
            sourceOf(source).pump->drain();
            return G_SOURCE_CONTINUE;
        },
        .finalize = nullptr,
        .closure_callback = nullptr,
        .closure_marshal = nullptr};
    source_ = attached(g_source_new(&functions, sizeof(Source)));
    Source& source = sourceOf(source_.get());
    source.pump = this;
    source.descriptor = g_source_add_unix_fd(source_.get(), connection.fileDescriptor(), G_IO_IN);
}

SubscriptionPtr EventPump::addHandler(Handler handler) {
    return handlers_.add(std::move(handler));
}

SubscriptionPtr EventPump::addEarlyHandler(Handler handler) {
    return earlyHandlers_.add(std::move(handler));
}

SubscriptionPtr EventPump::addRecoveryHandler(std::function<void()> handler) {
    return recoveryHandlers_.add(std::move(handler));
}

void EventPump::setConnectionLostHandler(std::function<void()> handler) {
    connectionLost_ = std::move(handler);
}

bool EventPump::isReady() {
    connection_.flush();
    // What XCB has queued does not wake the descriptor any more.
    if (waiting_.empty()) {
        if (x11::EventPtr event = toldEarly(connection_.pollQueuedEvent())) {
            waiting_.push_back(std::move(event));
        }
    }
    hasRecovered_ = hasRecovered_ || connection_.hasRecovered();
    return !waiting_.empty() || hasRecovered_ || !connection_.isAlive();
}

x11::EventPtr EventPump::read() {
    return toldEarly(connection_.pollEvent());
}

x11::EventPtr EventPump::toldEarly(x11::EventPtr event) {
    if (event) {
        earlyHandlers_.call(*event);
    }
    return event;
}

x11::EventPtr EventPump::next() {
    if (waiting_.empty()) {
        return read();
    }
    x11::EventPtr event = std::move(waiting_.front());
    waiting_.pop_front();
    return event;
}

bool EventPump::drain() {
    bool isDone = false;
    for (int left = mostOfOneRound; left > 0 && !isDone; --left) {
        const x11::EventPtr event = next();
        isDone = event == nullptr;
        if (event) {
            dispatch(*event);
        }
    }
    if (connection_.hasRecovered() || std::exchange(hasRecovered_, false)) {
        recoveryHandlers_.call();
    }
    connection_.flush();
    if (!connection_.isAlive()) {
        noticeLoss();
    }
    return isDone;
}

bool EventPump::fetch() {
    for (int left = mostOfOneRound; left > 0; --left) {
        x11::EventPtr event = read();
        if (event == nullptr) {
            return true;
        }
        waiting_.push_back(std::move(event));
    }
    return false;
}

bool EventPump::waitUntil(const std::function<bool()>& condition,
                          std::chrono::milliseconds patience) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + patience;
    while (true) {
        const bool isDone = drain();
        if (condition()) {
            return true;
        }
        const auto remaining =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (remaining.count() <= 0 || !connection_.isAlive()) {
            return false;
        }
        // The condition itself may have queued events.
        connection_.flush();
        if (!isDone || !fetch() || !waiting_.empty()) {
            continue;
        }
        pollfd descriptor{.fd = connection_.fileDescriptor(), .events = POLLIN, .revents = 0};
        ::poll(&descriptor, 1, static_cast<int>(remaining.count()));
    }
}

void EventPump::dispatch(const xcb_generic_event_t& event) {
    if (x11::typeOf(event) == 0) {
        reportError(x11::eventAs<xcb_generic_error_t>(event));
        return;
    }
    handlers_.call(event);
}

// Windows of other programs vanish between two looks, so an error is to be expected now and then.
void EventPump::reportError(const xcb_generic_error_t& error) {
    if (!std::exchange(errorIsReported_, true)) {
        logger_.error("The X server refused a request: error " + std::to_string(error.error_code) +
                      ", request " + std::to_string(error.major_code) + "." +
                      std::to_string(error.minor_code) + "; further errors are not logged");
    }
}

void EventPump::noticeLoss() {
    source_.reset();
    if (const auto handler = std::exchange(connectionLost_, nullptr)) {
        handler();
    }
}

} // namespace pelistra::linux
