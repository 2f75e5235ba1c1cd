#include "tests/platform/FakeGlobalClicks.h"

#include <algorithm>
#include <string>
#include <utility>

namespace pelistra::testing {

class FakeGlobalClicks::Token final : public Subscription {
public:
    Token(Journal& journal, std::shared_ptr<Monitor> monitor)
        : journal_(journal), monitor_(std::move(monitor)) {}
    Token(const Token&) = delete;
    Token& operator=(const Token&) = delete;
    ~Token() override { journal_.note("globalClicks.remove"); }

private:
    Journal& journal_;
    std::shared_ptr<Monitor> monitor_;
};

SubscriptionPtr FakeGlobalClicks::addMonitor(EventMask matching, std::function<void()> handler) {
    journal_.note("globalClicks.add(" + std::to_string(matching) + ")");
    if (refuses) {
        return nullptr;
    }
    auto monitor = std::make_shared<Monitor>(matching, std::move(handler));
    monitors_.push_back(monitor);
    return std::make_unique<Token>(journal_, std::move(monitor));
}

void FakeGlobalClicks::clickElsewhere(EventType type) {
    const auto told = monitors_;
    for (const auto& entry : told) {
        const auto monitor = entry.lock();
        if (monitor != nullptr && (monitor->mask & maskOf(type)) != 0) {
            monitor->handler();
        }
    }
}

std::size_t FakeGlobalClicks::monitors() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(monitors_, [](const auto& monitor) { return !monitor.expired(); }));
}

} // namespace pelistra::testing
