#include "platform/macos/NotificationObserver.h"

#include "platform/macos/Pool.h"

#include <utility>

namespace pelistra::macos {

NotificationObserver::NotificationObserver(NSNotificationName name, std::function<void()> handler)
    : NotificationObserver([NSNotificationCenter defaultCenter], name, std::move(handler)) {}

NotificationObserver::NotificationObserver(NSNotificationCenter* center, NSNotificationName name,
                                           std::function<void()> handler)
    : center_(Owned<NSNotificationCenter*>::share(center)),
      token_(Owned<id>::share([center addObserverForName:name
                                                  object:nil
                                                   queue:[NSOperationQueue mainQueue]
                                              usingBlock:^(NSNotification* notification) {
                                                (void)notification;
                                                runInPool(handler);
                                              }])) {}

NotificationObserver::~NotificationObserver() { [center_.get() removeObserver:token_.get()]; }

} // namespace pelistra::macos
