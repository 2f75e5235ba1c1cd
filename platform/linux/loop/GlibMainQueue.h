#pragma once

#include "platform/MainQueue.h"
#include "platform/linux/loop/Source.h"

#include <deque>
#include <list>

namespace pelistra::linux {

// The main queue on GLib's default main context, whoever runs it. Nothing runs once this object is
// gone.
class GlibMainQueue final : public MainQueue {
public:
    GlibMainQueue();
    GlibMainQueue(const GlibMainQueue&) = delete;
    GlibMainQueue& operator=(const GlibMainQueue&) = delete;
    ~GlibMainQueue() override = default;

    void async(std::function<void()> block) override;
    void asyncAfter(Seconds delay, std::function<void()> block) override;
    [[nodiscard]] SubscriptionPtr repeatingTimer(Seconds interval,
                                                 std::function<void()> block) override;

private:
    void runTurn();

    std::deque<std::function<void()>> blocks_;
    SourcePtr turn_;
    // What waits for its delay to end.
    std::list<SourcePtr> delayed_;
};

} // namespace pelistra::linux
