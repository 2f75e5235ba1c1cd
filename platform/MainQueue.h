#pragma once

#include "base/Subscription.h"

#include <chrono>
#include <functional>

namespace pelistra {

using Seconds = std::chrono::duration<double>;

// The main thread's queue. Blocks run on the main thread, one after the other, never inside the
// call that submitted them. The clock that the delays are measured on is the implementation's, so
// tests run on a virtual one.
class MainQueue {
public:
    MainQueue() = default;
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    virtual ~MainQueue() = default;

    // Runs the block on the next turn. Blocks run in the order in which they were submitted.
    virtual void async(std::function<void()> block) = 0;

    // Runs the block once, no earlier than the given delay from now. It cannot be cancelled.
    virtual void asyncAfter(Seconds delay, std::function<void()> block) = 0;

    // Runs the block every interval, the first time one interval from now, until the returned token
    // is destroyed. It fires in the common run-loop modes, that is also while a menu is open.
    [[nodiscard]] virtual SubscriptionPtr repeatingTimer(Seconds interval,
                                                         std::function<void()> block) = 0;
};

} // namespace pelistra
