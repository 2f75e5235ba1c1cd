#include "platform/macos/DispatchMainQueue.h"

#include "platform/macos/Owned.h"
#include "platform/macos/Pool.h"

#include <dispatch/dispatch.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

namespace pelistra::macos {

namespace {

// Rounded up, so that nothing runs early.
std::int64_t wholeNanoseconds(Seconds delay) {
    const double seconds = std::max(delay, Seconds::zero()).count();
    return static_cast<std::int64_t>(std::ceil(seconds * static_cast<double>(NSEC_PER_SEC)));
}

class RunLoopTimer final : public Subscription {
  public:
    RunLoopTimer(Seconds interval, std::function<void()> block)
        : timer_(Owned<NSTimer*>::share([NSTimer timerWithTimeInterval:interval.count()
                                                               repeats:YES
                                                                 block:^(NSTimer* timer) {
                                                                   (void)timer;
                                                                   runInPool(block);
                                                                 }])) {
        // The common modes, so that it also fires while a menu is open.
        [[NSRunLoop mainRunLoop] addTimer:timer_.get() forMode:NSRunLoopCommonModes];
    }
    RunLoopTimer(const RunLoopTimer&) = delete;
    RunLoopTimer& operator=(const RunLoopTimer&) = delete;
    ~RunLoopTimer() override { [timer_.get() invalidate]; }

  private:
    Owned<NSTimer*> timer_;
};

} // namespace

void DispatchMainQueue::async(std::function<void()> block) {
    dispatch_async(dispatch_get_main_queue(), ^{
      runInPool(block);
    });
}

void DispatchMainQueue::asyncAfter(Seconds delay, std::function<void()> block) {
    dispatch_after(dispatch_time(DISPATCH_TIME_NOW, wholeNanoseconds(delay)),
                   dispatch_get_main_queue(), ^{
                     runInPool(block);
                   });
}

SubscriptionPtr DispatchMainQueue::repeatingTimer(Seconds interval, std::function<void()> block) {
    return std::make_unique<RunLoopTimer>(interval, std::move(block));
}

} // namespace pelistra::macos
