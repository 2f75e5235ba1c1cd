#pragma once

#include "base/Subscription.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace pelistra {

// Handlers that are called, in the order in which they came, until their tokens die. A token may
// outlive the list. A handler may add and drop handlers, itself included, and may bring about a
// nested call; one that is added during a call is called from the next one on.
template <class... Arguments>
class HandlerList {
public:
    using Handler = std::function<void(Arguments...)>;

    [[nodiscard]] SubscriptionPtr add(Handler handler) {
        auto entry = std::make_shared<Handler>(std::move(handler));
        entries_.push_back(entry);
        return std::make_unique<Token>(std::move(entry));
    }

    void call(Arguments... arguments) {
        std::erase_if(entries_, [](const auto& entry) { return entry.expired(); });
        const auto called = entries_;
        for (const auto& entry : called) {
            if (const auto handler = entry.lock()) {
                (*handler)(arguments...);
            }
        }
    }

    // How many handlers there are.
    [[nodiscard]] std::size_t count() const {
        return static_cast<std::size_t>(
            std::ranges::count_if(entries_, [](const auto& entry) { return !entry.expired(); }));
    }

private:
    class Token final : public Subscription {
    public:
        explicit Token(std::shared_ptr<Handler> entry) : entry_(std::move(entry)) {}

    private:
        std::shared_ptr<Handler> entry_;
    };

    std::vector<std::weak_ptr<Handler>> entries_;
};

} // namespace pelistra
