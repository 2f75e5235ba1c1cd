#pragma once

#include "platform/MainQueue.h"

#include <chrono>
#include <functional>
#include <stdexcept>
#include <vector>

namespace pelistra::testing {

// A main queue on the real clock, for tests that work with other programs: blocks run when the test
// lets them.
class RealTimeQueue final : public MainQueue {
public:
    void async(std::function<void()> block) override { asyncAfter(Seconds{0}, std::move(block)); }

    void asyncAfter(Seconds delay, std::function<void()> block) override {
        blocks_.push_back({.due = Clock::now() + std::chrono::ceil<Clock::duration>(delay),
                           .run = std::move(block)});
    }

    [[nodiscard]] SubscriptionPtr repeatingTimer(Seconds /*interval*/,
                                                 std::function<void()> /*block*/) override {
        throw std::logic_error("nobody asks for a timer here");
    }

    // Runs what is due.
    void runDue() {
        const auto now = Clock::now();
        std::vector<Block> due;
        for (auto block = blocks_.begin(); block != blocks_.end();) {
            if (block->due <= now) {
                due.push_back(std::move(*block));
                block = blocks_.erase(block);
            } else {
                ++block;
            }
        }
        for (const Block& block : due) {
            block.run();
        }
    }

private:
    using Clock = std::chrono::steady_clock;
    struct Block {
        Clock::time_point due;
        std::function<void()> run;
    };

    std::vector<Block> blocks_;
};

} // namespace pelistra::testing
