#include "tests/desktop/tour/Windows.h"

#include <cmath>

namespace pelistra::testing {

bool WindowsUnderTour::says(const std::string& text) {
    return find(text).has_value();
}

bool WindowsUnderTour::click(const std::string& button) {
    const auto place = restingPlace(button);
    if (place) {
        tour_.desktop().input().click(*place);
    }
    return place.has_value();
}

bool WindowsUnderTour::clickSwitch(const std::string& name) {
    return click(name);
}

std::optional<bool> WindowsUnderTour::isChecked(const std::string& name) {
    const auto found = find(name);
    return found ? std::optional(found->isChecked) : std::nullopt;
}

bool WindowsUnderTour::moveFocusTo(const std::string& name) {
    constexpr int mostControls = 12;
    for (int count = 0; count < mostControls; ++count) {
        const auto found = find(name);
        if (found && found->isFocused) {
            return true;
        }
        tour_.desktop().input().tapKey(keys::tab);
        constexpr std::chrono::milliseconds moment{80};
        static_cast<void>(staysTrue([] { return true; }, moment));
    }
    return false;
}

std::optional<AccessibleTree::Element> WindowsUnderTour::find(const std::string& name) {
    return tour_.tree().find(tour_.desktop().organiser().process().pid(), name);
}

std::optional<RootPoint> WindowsUnderTour::restingPlace(const std::string& name) {
    auto last = waitForValue([&] { return find(name); });
    // A step that comes in moves while it does.
    constexpr std::chrono::milliseconds moment{120};
    static_cast<void>(waitFor([&] {
        const auto before = last;
        static_cast<void>(staysTrue([] { return true; }, moment));
        last = find(name);
        return last && before && last->frame == before->frame;
    }));
    if (!last) {
        return std::nullopt;
    }
    const double scale = tour_.desktop().bar().scale();
    return RootPoint{.x = static_cast<int>(std::lround(last->frame.midX() * scale)),
                     .y = static_cast<int>(std::lround(last->frame.midY() * scale))};
}

} // namespace pelistra::testing
