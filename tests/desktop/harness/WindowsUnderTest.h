#pragma once

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"

#include <optional>
#include <string>

namespace pelistra::testing {

// The titles of the two windows.
inline constexpr const char* settingsTitle = "Pelistra Settings";
inline constexpr const char* onboardingTitle = "Welcome to Pelistra";
// Their sizes, in points.
inline constexpr int settingsWidth = 680;
inline constexpr int settingsHeight = 600;
inline constexpr int onboardingWidth = 760;
inline constexpr int onboardingHeight = 560;

// A user in front of the organiser's windows: finds what a screen reader hears, clicks where it is.
class WindowsUnderTest {
public:
    // Both must outlive this object. The organiser must have been started as a speaking program.
    WindowsUnderTest(Desktop& desktop, AccessibleTree& tree) : desktop_(desktop), tree_(tree) {}

    // Whether something shows whose name begins so.
    [[nodiscard]] bool says(const std::string& text);
    // Clicks the middle of the button of that name once it shows; false when it never does.
    [[nodiscard]] bool click(const std::string& button);
    // The same for the switch of that name.
    [[nodiscard]] bool clickSwitch(const std::string& name) { return click(name); }
    // Empty when there is no such switch.
    [[nodiscard]] std::optional<bool> isChecked(const std::string& name);
    // Presses Tab until the control of that name has the focus; false when it never gets it.
    [[nodiscard]] bool moveFocusTo(const std::string& name);

private:
    [[nodiscard]] std::optional<AccessibleTree::Element> find(const std::string& name);
    // Where its middle is once it has come to rest, in device pixels.
    [[nodiscard]] std::optional<RootPoint> restingPlace(const std::string& name);

    Desktop& desktop_;
    AccessibleTree& tree_;
};

} // namespace pelistra::testing
