#pragma once

#include "platform/HandlerList.h"
#include "platform/Logger.h"
#include "platform/x11/Connection.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>

#include <QMetaObject>
#include <QSocketNotifier>

namespace pelistra::desktop {

// Brings the events of an X connection of our own to whoever handles them, on Qt's event loop. It
// wakes up only when the server says something; what a round trip has queued is dispatched before
// the loop goes to sleep. However much the server has to say, everything else on the loop has its
// turn after mostOfOneRound events.
class EventPump {
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    static constexpr int mostOfOneRound = 256;

    // Needs a QCoreApplication. The connection must outlive this object.
    EventPump(x11::Connection& connection, LogSink& log);
    EventPump(const EventPump&) = delete;
    EventPump& operator=(const EventPump&) = delete;
    ~EventPump();

    // Calls the handler for every event (errors not included) until the token dies.
    [[nodiscard]] SubscriptionPtr addHandler(Handler handler);

    // Calls the handler for every event as soon as it has been read, which may be well before its
    // turn comes. It must do no more than take note.
    [[nodiscard]] SubscriptionPtr addEarlyHandler(Handler handler);

    // What happens, once, when the server has gone.
    void setConnectionLostHandler(std::function<void()> handler);

    // Dispatches what has arrived, or a round of it, and flushes what is to be sent. False when
    // there is more: that follows on the loop's next turn.
    bool drain();

    // Reads what has arrived and dispatches none of it yet. False when there is more than a round.
    bool fetch();

    // Dispatches events until the condition holds, but no longer than `patience`. Returns whether
    // it holds.
    bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds patience);

private:
    // Null when nothing more has arrived.
    [[nodiscard]] x11::EventPtr read();
    [[nodiscard]] x11::EventPtr next();
    void dispatch(const xcb_generic_event_t& event);
    void continueOnNextTurn();
    void reportError(const xcb_generic_error_t& error);
    void noticeLoss();

    x11::Connection& connection_;
    Logger logger_;
    HandlerList<const xcb_generic_event_t&> handlers_;
    HandlerList<const xcb_generic_event_t&> earlyHandlers_;
    // Read, and not dispatched yet.
    std::deque<x11::EventPtr> waiting_;
    bool continues_ = false;
    std::function<void()> connectionLost_;
    bool errorIsReported_ = false;
    QSocketNotifier notifier_;
    QMetaObject::Connection aboutToBlock_;
};

} // namespace pelistra::desktop
