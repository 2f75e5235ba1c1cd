#pragma once

#include "platform/Subscription.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace pelistra {

// A value whose assignments are announced to observers before they take effect: an observer that
// reads the property while it is being told still sees the old value, and is handed the new one.
template <class T>
class Published {
public:
    using Observer = std::function<void(const T& newValue)>;

    explicit Published(T initial = T()) : value_(std::move(initial)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;
    ~Published() = default;

    [[nodiscard]] const T& get() const { return value_; }

    // One publication, whether or not the value differs.
    void set(T newValue) {
        announce(newValue);
        value_ = std::move(newValue);
    }

    // Changes the value in place as one publication.
    template <class Change>
    void mutate(const Change& change) {
        T newValue = value_;
        change(newValue);
        set(std::move(newValue));
    }

    // Tells the observer of every publication until the token dies. The token may outlive the
    // property, and may be dropped while observers are being told.
    [[nodiscard]] SubscriptionPtr observe(Observer observer) {
        auto entry = std::make_shared<Observer>(std::move(observer));
        observers_.push_back(entry);
        return std::make_unique<Token>(std::move(entry));
    }

private:
    class Token final : public Subscription {
    public:
        explicit Token(std::shared_ptr<Observer> entry) : entry_(std::move(entry)) {}

    private:
        std::shared_ptr<Observer> entry_;
    };

    void announce(const T& newValue) {
        std::erase_if(observers_, [](const auto& entry) { return entry.expired(); });
        const auto told = observers_;
        for (const auto& entry : told) {
            if (const auto observer = entry.lock()) {
                (*observer)(newValue);
            }
        }
    }

    T value_;
    std::vector<std::weak_ptr<Observer>> observers_;
};

} // namespace pelistra
