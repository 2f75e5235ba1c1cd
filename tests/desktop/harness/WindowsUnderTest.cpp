#include "tests/desktop/harness/WindowsUnderTest.h"

#include <cmath>

namespace pelistra::testing {

bool WindowsUnderTest::says(const std::string& text) {
    return find(text).has_value();
}

bool WindowsUnderTest::click(const std::string& button) {
    const auto place = restingPlace(button);
    if (place) {
        desktop_.input().click(*place);
    }
    return place.has_value();
}

std::optional<bool> WindowsUnderTest::isChecked(const std::string& name) {
    const auto found = find(name);
    return found ? std::optional(found->isChecked) : std::nullopt;
}

bool WindowsUnderTest::moveFocusTo(const std::string& name) {
    constexpr int mostControls = 12;
    for (int count = 0; count < mostControls; ++count) {
        const auto found = find(name);
        if (found && found->isFocused) {
            return true;
        }
        desktop_.input().tapKey(keys::tab);
        constexpr std::chrono::milliseconds moment{80};
        static_cast<void>(staysTrue([] { return true; }, moment));
    }
    return false;
}

std::optional<AccessibleTree::Element> WindowsUnderTest::find(const std::string& name) {
    return tree_.find(desktop_.organiser().process().pid(), name);
}

std::optional<RootPoint> WindowsUnderTest::restingPlace(const std::string& name) {
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
    const double scale = desktop_.bar().scale();
    return RootPoint{.x = static_cast<int>(std::lround(last->frame.midX() * scale)),
                     .y = static_cast<int>(std::lround(last->frame.midY() * scale))};
}

} // namespace pelistra::testing
