#pragma once

#include "platform/GlobalClicks.h"

namespace pelistra::appkit {

class GlobalEventMonitor final : public GlobalClicks {
public:
    [[nodiscard]] SubscriptionPtr addMonitor(EventMask matching,
                                             std::function<void()> handler) override;
};

} // namespace pelistra::appkit
