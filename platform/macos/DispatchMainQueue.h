#pragma once

#include "platform/MainQueue.h"

namespace pelistra::macos {

// The main dispatch queue, and timers on the main run loop.
class DispatchMainQueue final : public MainQueue {
public:
    void async(std::function<void()> block) override;
    void asyncAfter(Seconds delay, std::function<void()> block) override;
    [[nodiscard]] SubscriptionPtr repeatingTimer(Seconds interval,
                                                 std::function<void()> block) override;
};

} // namespace pelistra::macos
