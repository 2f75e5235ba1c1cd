#pragma once

#include "platform/MainQueue.h"

#include <deque>
#include <memory>

class QObject;

namespace pelistra::desktop {

// The main queue on Qt's event loop. Nothing runs once this object is gone; a QCoreApplication has
// to be there when a delay or a timer is asked for.
class QtMainQueue final : public MainQueue {
public:
    QtMainQueue();
    QtMainQueue(const QtMainQueue&) = delete;
    QtMainQueue& operator=(const QtMainQueue&) = delete;
    ~QtMainQueue() override;

    void async(std::function<void()> block) override;
    void asyncAfter(Seconds delay, std::function<void()> block) override;
    [[nodiscard]] SubscriptionPtr repeatingTimer(Seconds interval,
                                                 std::function<void()> block) override;

private:
    void scheduleTurn();
    void runTurn();

    std::deque<std::function<void()>> blocks_;
    bool turnIsScheduled_ = false;
    // Whatever Qt is to call is called in this object's name.
    std::unique_ptr<QObject> context_;
};

} // namespace pelistra::desktop
