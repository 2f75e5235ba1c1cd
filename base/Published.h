#pragma once

#include "base/HandlerList.h"
#include "base/Subscription.h"

#include <utility>

namespace pelistra {

// A value whose assignments are announced to observers before they take effect: an observer that
// reads the property while it is being told still sees the old value, and is handed the new one.
template <class T>
class Published {
public:
    // Is handed the new value.
    using Observer = typename HandlerList<const T&>::Handler;

    explicit Published(T initial = T()) : value_(std::move(initial)) {}
    Published(const Published&) = delete;
    Published& operator=(const Published&) = delete;
    ~Published() = default;

    [[nodiscard]] const T& get() const { return value_; }

    // One publication, whether or not the value differs.
    void set(T newValue) {
        observers_.call(newValue);
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
        return observers_.add(std::move(observer));
    }

private:
    T value_;
    HandlerList<const T&> observers_;
};

} // namespace pelistra
