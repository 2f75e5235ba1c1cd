#pragma once

#include <memory>

namespace pelistra {

// Something asked for that ends when its holder lets go: an observer, a timer, an event monitor.
// Destroying it is the only operation; after that, its handler is never called again.
class Subscription {
public:
    Subscription() = default;
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    virtual ~Subscription() = default;
};

using SubscriptionPtr = std::unique_ptr<Subscription>;

} // namespace pelistra
