#pragma once

#include "base/Published.h"
#include "base/Subscription.h"
#include "ui/View.h"

#include <functional>
#include <vector>

namespace pelistra::ui {

// What the surroundings of a view say about themselves.
struct Environment {
    // The user asked the desktop to avoid motion.
    bool reduceMotion = false;

    bool operator==(const Environment&) const = default;
};

// What a window or panel hosts: a view that is a function of state. Shared by whoever made it and
// the window that shows it. Main thread only.
//
// A front end draws body() when it is handed the content, and again some time after every call of
// the observer, on a later turn of the main queue: many calls before that turn ask for one redraw.
// What is equal to the body before is not redrawn, only its actions are replaced.
class Content {
public:
    Content() = default;
    Content(const Content&) = delete;
    Content& operator=(const Content&) = delete;
    virtual ~Content() = default;

    // The view for the present state.
    [[nodiscard]] virtual View body() = 0;

    // Calls the observer before every change of the state that body() depends on, until the token
    // dies. The observer must not call body(): it would still see the old state.
    [[nodiscard]] SubscriptionPtr observe(const std::function<void()>& changed);

    // The front end calls this before it first asks for the body, and whenever something in it
    // changes. The value of before is not announced again.
    void setEnvironment(const Environment& environment);
    [[nodiscard]] const Environment& environment() const { return environment_.get(); }

protected:
    // One token for each property that body() depends on, besides the environment.
    [[nodiscard]] virtual std::vector<SubscriptionPtr>
    observeState(const std::function<void()>& changed) = 0;

private:
    Published<Environment> environment_;
};

// An observer of a published property that does not look at the value.
template <class T>
[[nodiscard]] SubscriptionPtr observeChanges(Published<T>& property,
                                             const std::function<void()>& changed) {
    return property.observe([changed](const T&) { changed(); });
}

} // namespace pelistra::ui
