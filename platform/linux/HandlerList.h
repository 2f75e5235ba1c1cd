#pragma once

#include "platform/Subscription.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace pelistra::desktop {

// Handlers that are called until their tokens die. A handler may add and drop handlers, itself
// included, and may bring about a nested call.
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

private:
    class Token final : public Subscription {
    public:
        explicit Token(std::shared_ptr<Handler> entry) : entry_(std::move(entry)) {}

    private:
        std::shared_ptr<Handler> entry_;
    };

    std::vector<std::weak_ptr<Handler>> entries_;
};

} // namespace pelistra::desktop
