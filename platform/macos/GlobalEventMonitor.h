#pragma once

#include "platform/GlobalClicks.h"

namespace pelistra::macos {

// What happens in other applications, by a global monitor of NSEvent.
class GlobalEventMonitor final : public GlobalClicks {
public:
    [[nodiscard]] SubscriptionPtr addMonitor(EventMask matching,
                                             std::function<void()> handler) override;
};

} // namespace pelistra::macos
