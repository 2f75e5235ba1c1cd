#pragma once

#include "base/Geometry.h"
#include "base/Subscription.h"

#include <functional>
#include <optional>
#include <vector>

namespace pelistra {

// One screen, in points.
struct Screen {
    ScreenRect frame;
    // The frame without what the system's own bars take.
    ScreenRect visibleFrame;
    // The menu-bar areas left and right of the camera housing; empty on a screen without one.
    std::optional<ScreenRect> auxiliaryTopLeftArea;
    std::optional<ScreenRect> auxiliaryTopRightArea;

    bool operator==(const Screen&) const = default;
};

// The screens, asked afresh at every call.
class Screens {
public:
    Screens() = default;
    Screens(const Screens&) = delete;
    Screens& operator=(const Screens&) = delete;
    virtual ~Screens() = default;

    // In the platform's order, the primary one first; empty when there is none.
    [[nodiscard]] virtual std::vector<Screen> screens() const = 0;
    // The screen of the window with the keyboard focus, or the primary one; empty when there is
    // none.
    [[nodiscard]] virtual std::optional<Screen> main() const = 0;

    // Calls the handler on the main thread after screens came, went, moved or changed their size.
    [[nodiscard]] virtual SubscriptionPtr
    observeParameterChanges(std::function<void()> handler) = 0;
};

} // namespace pelistra
