#pragma once

#include "platform/MainQueue.h"
#include "tests/platform/Journal.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace pelistra::testing {

// A main queue on a virtual clock: nothing runs until the test lets a turn or some time pass.
// Journal: "async", "after <seconds>", "every <seconds>", "end of every <seconds>".
class FakeMainQueue final : public MainQueue {
public:
    explicit FakeMainQueue(Journal& journal) : journal_(journal) {}

    void async(std::function<void()> block) override;
    void asyncAfter(Seconds delay, std::function<void()> block) override;
    [[nodiscard]] SubscriptionPtr repeatingTimer(Seconds interval,
                                                 std::function<void()> block) override;

    // Runs the blocks that wait for the next turn now; what they submit waits for the turn after.
    void runTurn();
    // Runs turns until nothing waits for one. Throws when that never ends.
    void runUntilIdle();
    // Lets time pass: everything due within it runs at its time, in order, with the turns between.
    void advance(Seconds time);

    [[nodiscard]] Seconds now() const;
    [[nodiscard]] std::size_t waitingBlocks() const { return ready_.size(); }
    [[nodiscard]] std::size_t delayedBlocks() const { return delayed_.size(); }
    [[nodiscard]] std::size_t runningTimers() const;

private:
    using Nanoseconds = std::int64_t;
    struct Delayed {
        Nanoseconds due = 0;
        std::uint64_t order = 0;
        std::function<void()> block;
    };
    struct Timer {
        Nanoseconds due = 0;
        std::uint64_t order = 0;
        Nanoseconds interval = 0;
        std::function<void()> block;
    };
    class TimerToken;

    static Nanoseconds nanoseconds(Seconds time);
    bool runNextDue(Nanoseconds until);
    std::shared_ptr<Timer> nextTimer() const;

    Journal& journal_;
    Nanoseconds now_ = 0;
    std::uint64_t submitted_ = 0;
    std::deque<std::function<void()>> ready_;
    std::vector<Delayed> delayed_;
    std::vector<std::weak_ptr<Timer>> timers_;
};

} // namespace pelistra::testing
