#include "platform/linux/QtMainQueue.h"

#include <algorithm>
#include <utility>

#include <QObject>
#include <QTimer>

namespace pelistra::desktop {

namespace {

// Rounded up, so that nothing runs early.
std::chrono::milliseconds wholeMilliseconds(Seconds delay) {
    return std::chrono::ceil<std::chrono::milliseconds>(std::max(delay, Seconds::zero()));
}

class Timer final : public Subscription {
public:
    Timer(Seconds interval, std::function<void()> block)
        : block_(std::make_shared<std::function<void()>>(std::move(block))) {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setInterval(wholeMilliseconds(interval));
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [block = block_] {
            // Keeps a block alive that drops its own timer.
            const auto running = block; // NOLINT(performance-unnecessary-copy-initialization)
            (*running)();
        });
        timer_.start();
    }

private:
    std::shared_ptr<std::function<void()>> block_;
    QTimer timer_;
};

} // namespace

QtMainQueue::QtMainQueue() : context_(std::make_unique<QObject>()) {}

QtMainQueue::~QtMainQueue() = default;

void QtMainQueue::async(std::function<void()> block) {
    blocks_.push_back(std::move(block));
    scheduleTurn();
}

void QtMainQueue::scheduleTurn() {
    if (!std::exchange(turnIsScheduled_, true)) {
        QTimer::singleShot(0, context_.get(), [this] { runTurn(); });
    }
}

// What is submitted while a turn runs waits for the next one.
void QtMainQueue::runTurn() {
    turnIsScheduled_ = false;
    // A block that runs an event loop of its own may have the others served there.
    for (auto remaining = blocks_.size(); remaining > 0 && !blocks_.empty(); --remaining) {
        const auto block = std::move(blocks_.front());
        blocks_.pop_front();
        block();
    }
}

void QtMainQueue::asyncAfter(Seconds delay, std::function<void()> block) {
    QTimer::singleShot(wholeMilliseconds(delay), Qt::PreciseTimer, context_.get(),
                       std::move(block));
}

SubscriptionPtr QtMainQueue::repeatingTimer(Seconds interval, std::function<void()> block) {
    return std::make_unique<Timer>(interval, std::move(block));
}

} // namespace pelistra::desktop
