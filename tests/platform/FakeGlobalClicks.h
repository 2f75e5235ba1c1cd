#pragma once

#include "platform/GlobalClicks.h"
#include "tests/platform/Journal.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace pelistra::testing {

// Journal: "globalClicks.add(<mask>)", "globalClicks.remove".
class FakeGlobalClicks final : public GlobalClicks {
public:
    explicit FakeGlobalClicks(Journal& journal) : journal_(journal) {}

    [[nodiscard]] SubscriptionPtr addMonitor(EventMask matching,
                                             std::function<void()> handler) override;

    // An event of that type goes to another application.
    void clickElsewhere(EventType type);
    // How many monitors there are now.
    [[nodiscard]] std::size_t monitors() const;

    // Whether the system allows no monitor.
    bool refuses = false;

private:
    struct Monitor {
        EventMask mask = 0;
        std::function<void()> handler;
    };
    class Token;

    Journal& journal_;
    std::vector<std::weak_ptr<Monitor>> monitors_;
};

} // namespace pelistra::testing
