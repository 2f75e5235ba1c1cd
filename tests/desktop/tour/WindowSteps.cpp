#include "tests/desktop/harness/WindowsUnderTest.h"
#include "tests/desktop/tour/Tour.h"

namespace pelistra::testing {

Seen lookAtWindow(Desktop& desktop, const std::string& title, int width, int height) {
    XClient& x = desktop.x();
    const auto scale = static_cast<int>(desktop.bar().scale());
    const bool ok = waitFor([&] {
        const auto window = x.managedWindow(title);
        const auto frame = window ? x.frame(*window) : std::nullopt;
        return frame && frame->width == width * scale && frame->height == height * scale &&
               x.isViewable(*window);
    });
    const auto window = x.managedWindow(title);
    const auto frame = window ? x.frame(*window) : std::nullopt;
    return {.ok = ok, .text = "\"" + title + "\" " + (frame ? describe(*frame) : "absent")};
}

namespace {

struct Window {
    const char* title;
    int width;
    int height;
};
constexpr Window settings{.title = settingsTitle, .width = settingsWidth, .height = settingsHeight};
constexpr Window onboarding{
    .title = onboardingTitle, .width = onboardingWidth, .height = onboardingHeight};

Seen look(Desktop& desktop, const Window& window) {
    return lookAtWindow(desktop, window.title, window.width, window.height);
}

Seen startASecond(Desktop& desktop, const std::string& option, const Window& window) {
    const std::size_t items = desktop.items().size();
    const auto second = desktop.display().start({(builtPrograms() / "pelistra").string(), option});
    const bool ended = second->waitForExit() == ExitStatus{.status = 0};
    Seen seen = look(desktop, window);
    seen.ok = seen.ok && ended && desktop.items().size() == items;
    seen.text += ended ? ", the second start has ended with status 0" : ", no clean end";
    return seen;
}

// Asks every window of the organiser to close, as the window manager's button does.
Seen closeWindows(Desktop& desktop) {
    XClient& x = desktop.x();
    for (const xcb_window_t window : desktop.organiserWindows()) {
        x.requestClose(window);
    }
    const bool ok = waitFor([&] { return desktop.organiserWindows().empty(); });
    return {.ok = ok && desktop.organiser().process().isRunning(),
            .text = std::to_string(desktop.organiserWindows().size()) +
                    " windows open, the organiser is running"};
}

} // namespace

void walkWindows(Tour& tour) {
    Desktop& desktop = tour.desktop();
    tour.step("Right-click the arrow", [&]() -> Seen {
        if (!desktop.clickControl(UserInput::Button::Right)) {
            return {.ok = false, .text = "no arrow"};
        }
        return look(desktop, settings);
    });
    tour.step("Close the settings", [&] { return closeWindows(desktop); });
    tour.step("Start a second organiser with --show-settings",
              [&] { return startASecond(desktop, "--show-settings", settings); });
    tour.step("Start a second organiser with --show-onboarding",
              [&] { return startASecond(desktop, "--show-onboarding", onboarding); });
    tour.step("Close both windows", [&] { return closeWindows(desktop); });
}

} // namespace pelistra::testing
