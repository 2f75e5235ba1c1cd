#pragma once

#include "base/HandlerList.h"
#include "base/Logger.h"
#include "platform/linux/loop/Source.h"
#include "platform/x11/Connection.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>

namespace pelistra::linux {

// Brings the events of an X connection to whoever handles them, on GLib's default main context. It
// wakes up only when the server says something; what a round trip has queued is dispatched before
// the loop goes to sleep. However much the server has to say, everything else on the loop has its
// turn after mostOfOneRound events.
class EventPump {
public:
    using Handler = std::function<void(const xcb_generic_event_t&)>;

    static constexpr int mostOfOneRound = 256;

    // The connection must outlive this object.
    EventPump(x11::Connection& connection, LogSink& log);
    EventPump(const EventPump&) = delete;
    EventPump& operator=(const EventPump&) = delete;
    ~EventPump() = default;

    // Calls the handler for every event (errors not included) until the token dies.
    [[nodiscard]] SubscriptionPtr addHandler(Handler handler);

    // Calls the handler for every event as soon as it has been read, which may be well before its
    // turn comes. It must do no more than take note.
    [[nodiscard]] SubscriptionPtr addEarlyHandler(Handler handler);

    // Calls the handler when the server answers again after it was stalled: whoever got no answer
    // meanwhile asks once more.
    [[nodiscard]] SubscriptionPtr addRecoveryHandler(std::function<void()> handler);

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
    struct Source;

    [[nodiscard]] static Source& sourceOf(GSource* source);
    // To be asked before the loop goes to sleep: whether there is something to dispatch. What has
    // been asked of the server is sent.
    [[nodiscard]] bool isReady();
    // Null when nothing more has arrived.
    [[nodiscard]] x11::EventPtr read();
    // Tells of an event that has been read, if it is one.
    [[nodiscard]] x11::EventPtr toldEarly(x11::EventPtr event);
    [[nodiscard]] x11::EventPtr next();
    void dispatch(const xcb_generic_event_t& event);
    void reportError(const xcb_generic_error_t& error);
    void noticeLoss();

    x11::Connection& connection_;
    Logger logger_;
    HandlerList<const xcb_generic_event_t&> handlers_;
    HandlerList<const xcb_generic_event_t&> earlyHandlers_;
    HandlerList<> recoveryHandlers_;
    // Noticed, and not told yet.
    bool hasRecovered_ = false;
    // Read, and not dispatched yet.
    std::deque<x11::EventPtr> waiting_;
    std::function<void()> connectionLost_;
    bool errorIsReported_ = false;
    SourcePtr source_;
};

} // namespace pelistra::linux
