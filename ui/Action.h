#pragma once

#include <concepts>
#include <functional>
#include <utility>

namespace pelistra::ui {

// What a control does. Actions take no part in the equality of views: a body that is computed again
// makes new closures although nothing to be drawn has changed. In return, whoever keeps a widget
// for a view must always call the action of the newest equal value, never the one that the widget
// was made with.
template <class... Arguments>
class BasicAction {
public:
    BasicAction() = default;
    BasicAction(std::function<void(Arguments...)> call) : call_(std::move(call)) {}
    template <class Callable>
        requires std::invocable<Callable&, Arguments...>
    BasicAction(Callable call) : call_(std::move(call)) {}

    // Does nothing when the action is empty.
    void operator()(Arguments... arguments) const {
        if (call_) {
            call_(std::forward<Arguments>(arguments)...);
        }
    }

    [[nodiscard]] explicit operator bool() const { return static_cast<bool>(call_); }
    bool operator==(const BasicAction&) const { return true; }

private:
    std::function<void(Arguments...)> call_;
};

using Action = BasicAction<>;
// Told the state that the user asked for.
using ToggleAction = BasicAction<bool>;

} // namespace pelistra::ui
