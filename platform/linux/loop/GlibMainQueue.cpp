#include "platform/linux/loop/GlibMainQueue.h"

#include <algorithm>
#include <utility>

namespace pelistra::linux {

namespace {

constexpr gint64 atOnce = 0;
constexpr gint64 never = -1;

// Rounded up, and one more for the clock's own rounding, so that nothing runs early.
gint64 wholeMicroseconds(Seconds delay) {
    return std::chrono::ceil<std::chrono::microseconds>(std::max(delay, Seconds::zero())).count() +
           1;
}

class Timer final : public Subscription {
public:
    Timer(Seconds interval, std::function<void()> block)
        : interval_(wholeMicroseconds(interval)), due_(g_get_monotonic_time() + interval_),
          source_(timedSource([this, block = std::move(block)] {
              schedule();
              // It may end this timer.
              block();
          })) {
        g_source_set_ready_time(source_.get(), due_);
    }

private:
    // What was missed is not made up for.
    void schedule() {
        due_ += interval_;
        const gint64 now = g_get_monotonic_time();
        if (due_ <= now) {
            due_ = now + interval_;
        }
        g_source_set_ready_time(source_.get(), due_);
    }

    gint64 interval_;
    gint64 due_;
    SourcePtr source_;
};

} // namespace

GlibMainQueue::GlibMainQueue() : turn_(timedSource([this] { runTurn(); })) {}

void GlibMainQueue::async(std::function<void()> block) {
    blocks_.push_back(std::move(block));
    g_source_set_ready_time(turn_.get(), atOnce);
}

// What is submitted while a turn runs waits for the next one.
void GlibMainQueue::runTurn() {
    g_source_set_ready_time(turn_.get(), never);
    // A block that runs an event loop of its own may have the others served there.
    for (auto remaining = blocks_.size(); remaining > 0 && !blocks_.empty(); --remaining) {
        const auto block = std::move(blocks_.front());
        blocks_.pop_front();
        block();
    }
}

void GlibMainQueue::asyncAfter(Seconds delay, std::function<void()> block) {
    const auto place = delayed_.emplace(delayed_.end());
    *place = timedSource([this, place, block = std::move(block)] {
        delayed_.erase(place);
        block();
    });
    g_source_set_ready_time(place->get(), g_get_monotonic_time() + wholeMicroseconds(delay));
}

SubscriptionPtr GlibMainQueue::repeatingTimer(Seconds interval, std::function<void()> block) {
    return std::make_unique<Timer>(interval, std::move(block));
}

} // namespace pelistra::linux
