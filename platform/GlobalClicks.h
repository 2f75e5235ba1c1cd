#pragma once

#include "base/Subscription.h"
#include "platform/Application.h"

#include <functional>

namespace pelistra {

// Events that go to other applications.
class GlobalClicks {
public:
    GlobalClicks() = default;
    GlobalClicks(const GlobalClicks&) = delete;
    GlobalClicks& operator=(const GlobalClicks&) = delete;
    virtual ~GlobalClicks() = default;

    // Calls the handler on the main thread for every event of the mask that is delivered to another
    // application, until the token dies. Events for this application's own windows and status items
    // are not told, nor are those that it posts itself. Null when the system allows no monitor.
    [[nodiscard]] virtual SubscriptionPtr addMonitor(EventMask matching,
                                                     std::function<void()> handler) = 0;
};

} // namespace pelistra
