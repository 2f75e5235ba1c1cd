#include "tests/platform/FakeMainQueue.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace pelistra::testing {

class FakeMainQueue::TimerToken final : public Subscription {
public:
    TimerToken(std::shared_ptr<Timer> timer, Journal& journal, std::string name)
        : timer_(std::move(timer)), journal_(journal), name_(std::move(name)) {}
    TimerToken(const TimerToken&) = delete;
    TimerToken& operator=(const TimerToken&) = delete;
    ~TimerToken() override { journal_.note("end of " + name_); }

private:
    std::shared_ptr<Timer> timer_;
    Journal& journal_;
    std::string name_;
};

void FakeMainQueue::async(std::function<void()> block) {
    journal_.note("async");
    ready_.push_back(std::move(block));
}

void FakeMainQueue::asyncAfter(Seconds delay, std::function<void()> block) {
    journal_.note("after " + decimal(delay.count()));
    delayed_.push_back({.due = now_ + std::max<Nanoseconds>(nanoseconds(delay), 0),
                        .order = submitted_++,
                        .block = std::move(block)});
}

SubscriptionPtr FakeMainQueue::repeatingTimer(Seconds interval, std::function<void()> block) {
    const Nanoseconds length = nanoseconds(interval);
    if (length <= 0) {
        throw std::invalid_argument("a timer needs a positive interval");
    }
    std::string name = "every " + decimal(interval.count());
    journal_.note(name);
    auto timer = std::make_shared<Timer>(Timer{.due = now_ + length,
                                               .order = submitted_++,
                                               .interval = length,
                                               .block = std::move(block)});
    timers_.push_back(timer);
    return std::make_unique<TimerToken>(std::move(timer), journal_, std::move(name));
}

void FakeMainQueue::runTurn() {
    for (auto waiting = ready_.size(); waiting > 0; --waiting) {
        const auto block = std::move(ready_.front());
        ready_.pop_front();
        block();
    }
}

void FakeMainQueue::runUntilIdle() {
    constexpr int enough = 10'000;
    for (int turn = 0; turn < enough; ++turn) {
        if (ready_.empty()) {
            return;
        }
        runTurn();
    }
    throw std::runtime_error("the main queue never became idle");
}

void FakeMainQueue::advance(Seconds time) {
    const Nanoseconds until = now_ + nanoseconds(time);
    runUntilIdle();
    while (runNextDue(until)) {
        // What is due at one moment comes before the turns that it asks for.
        const Nanoseconds moment = now_;
        while (runNextDue(moment)) {
        }
        runUntilIdle();
    }
    now_ = until;
}

Seconds FakeMainQueue::now() const {
    return std::chrono::nanoseconds(now_);
}

std::size_t FakeMainQueue::runningTimers() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(timers_, [](const auto& timer) { return !timer.expired(); }));
}

FakeMainQueue::Nanoseconds FakeMainQueue::nanoseconds(Seconds time) {
    return std::llround(time.count() * 1e9);
}

// Runs what is due first, if that is not later than the given time.
bool FakeMainQueue::runNextDue(Nanoseconds until) {
    const auto earlier = [](const auto& left, const auto& right) {
        return std::tie(left.due, left.order) < std::tie(right.due, right.order);
    };
    const auto delayed = std::ranges::min_element(delayed_, earlier);
    const auto timer = nextTimer();
    if (timer != nullptr && timer->due <= until &&
        (delayed == delayed_.end() || earlier(*timer, *delayed))) {
        now_ = timer->due;
        timer->due += timer->interval;
        timer->order = submitted_++;
        timer->block();
        return true;
    }
    if (delayed == delayed_.end() || delayed->due > until) {
        return false;
    }
    now_ = delayed->due;
    const auto block = std::move(delayed->block);
    delayed_.erase(delayed);
    block();
    return true;
}

std::shared_ptr<FakeMainQueue::Timer> FakeMainQueue::nextTimer() const {
    std::shared_ptr<Timer> next;
    for (const auto& entry : timers_) {
        const auto timer = entry.lock();
        if (timer != nullptr && (next == nullptr || std::tie(timer->due, timer->order) <
                                                        std::tie(next->due, next->order))) {
            next = timer;
        }
    }
    return next;
}

} // namespace pelistra::testing
