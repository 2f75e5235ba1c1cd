#pragma once

#include "base/Subscription.h"
#include "platform/macos/Owned.h"

#include <functional>

namespace pelistra::macos {

// Calls the handler on the main operation queue for every notification of that name, from whatever
// object, until it dies.
class NotificationObserver final : public Subscription {
public:
    // The default centre.
    NotificationObserver(NSNotificationName name, std::function<void()> handler);
    NotificationObserver(NSNotificationCenter* center, NSNotificationName name,
                         std::function<void()> handler);
    NotificationObserver(const NotificationObserver&) = delete;
    NotificationObserver& operator=(const NotificationObserver&) = delete;
    ~NotificationObserver() override;

private:
    Owned<NSNotificationCenter*> center_;
    Owned<id> token_;
};

} // namespace pelistra::macos
