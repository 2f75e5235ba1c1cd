#include "platform/macos/GlobalEventMonitor.h"

#include "platform/macos/Owned.h"
#include "platform/macos/Pool.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace pelistra::macos {

namespace {

class Monitor final : public Subscription {
  public:
    explicit Monitor(Owned<id> token) : token_(std::move(token)) {}
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;
    ~Monitor() override { [NSEvent removeMonitor:token_.get()]; }

  private:
    Owned<id> token_;
};

} // namespace

SubscriptionPtr GlobalEventMonitor::addMonitor(EventMask matching, std::function<void()> handler) {
    auto token = Owned<id>::share([NSEvent
        addGlobalMonitorForEventsMatchingMask:static_cast<NSEventMask>(matching)
                                      handler:^(NSEvent* event) {
                                        (void)event;
                                        runInPool(handler);
                                      }]);
    return token ? std::make_unique<Monitor>(std::move(token)) : nullptr;
}

} // namespace pelistra::macos
