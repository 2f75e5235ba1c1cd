#pragma once

#include "platform/Logger.h"
#include "platform/linux/HandlerList.h"
#include "platform/x11/Connection.h"

#include <chrono>
#include <functional>
#include <memory>

#include <QMetaObject>
#include <QSocketNotifier>

namespace pelistra::desktop {

// Brings the events of an X connection of our own to whoever handles them, on Qt's event loop. It
// wakes up only when the server says something; what a round trip has queued is dispatched before
// the loop goes to sleep.
class EventPump {
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    // Needs a QCoreApplication. The connection must outlive this object.
    EventPump(x11::Connection& connection, LogSink& log);
    EventPump(const EventPump&) = delete;
    EventPump& operator=(const EventPump&) = delete;
    ~EventPump();

    // Calls the handler for every event (errors not included) until the token dies.
    [[nodiscard]] SubscriptionPtr addHandler(Handler handler);

    // What happens, once, when the server has gone.
    void setConnectionLostHandler(std::function<void()> handler);

    // Dispatches what has arrived and flushes what is to be sent.
    void drain();

    // Dispatches events until the condition holds, but no longer than `patience`. Returns whether
    // it holds.
    bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds patience);

private:
    void dispatch(const xcb_generic_event_t& event);
    void reportError(const xcb_generic_error_t& error);
    void noticeLoss();

    x11::Connection& connection_;
    Logger logger_;
    HandlerList<const xcb_generic_event_t&> handlers_;
    std::function<void()> connectionLost_;
    bool errorIsReported_ = false;
    QSocketNotifier notifier_;
    QMetaObject::Connection aboutToBlock_;
};

} // namespace pelistra::desktop
