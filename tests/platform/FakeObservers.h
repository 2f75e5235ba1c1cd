#pragma once

#include "platform/Subscription.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace pelistra::testing {

// The handlers that a fake was given. A handler leaves when its token dies; the token may outlive
// the fake.
template <class... Arguments>
class FakeObservers {
public:
    using Handler = std::function<void(Arguments...)>;

    [[nodiscard]] SubscriptionPtr add(Handler handler) {
        auto entry = std::make_shared<Handler>(std::move(handler));
        entries_.push_back(entry);
        return std::make_unique<Token>(std::move(entry));
    }

    void tell(Arguments... arguments) {
        const auto told = entries_;
        for (const auto& entry : told) {
            if (const auto handler = entry.lock()) {
                (*handler)(arguments...);
            }
        }
    }

    [[nodiscard]] std::size_t count() const {
        std::size_t living = 0;
        for (const auto& entry : entries_) {
            living += entry.expired() ? 0 : 1;
        }
        return living;
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

} // namespace pelistra::testing
