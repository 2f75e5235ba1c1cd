#pragma once

#include "base/HandlerList.h"
#include "platform/x11/Connection.h"

#include <cstdint>
#include <functional>

namespace pelistra::linux {

// Whether some program composites the screen, and when that changes.
class CompositorWatch {
public:
    using ObserveEvents =
        std::function<SubscriptionPtr(std::function<void(const xcb_generic_event_t&)>)>;

    // `observeEvents` calls a handler for every event of the connection, which outlives this
    // object. On a server without XFixes no change is heard of.
    CompositorWatch(const x11::Connection& connection, const ObserveEvents& observeEvents);
    CompositorWatch(const CompositorWatch&) = delete;
    CompositorWatch& operator=(const CompositorWatch&) = delete;
    ~CompositorWatch() = default;

    // As it is now; as it was when the server last answered, while it does not.
    [[nodiscard]] bool isComposited() const;
    // Calls the handler after another program has begun to composite or the last one has ended,
    // until the token dies.
    [[nodiscard]] SubscriptionPtr observe(std::function<void()> handler);

private:
    const x11::Connection& connection_;
    xcb_atom_t selection_;
    mutable bool isComposited_ = false;
    HandlerList<> observers_;
    SubscriptionPtr events_;
};

} // namespace pelistra::linux
