#include "tests/desktop/tour/Tour.h"

namespace pelistra::testing {

namespace {

constexpr WindowFrame settingsSize{.width = 680, .height = 600};
constexpr WindowFrame onboardingSize{.width = 760, .height = 560};

Seen lookAtWindow(Desktop& desktop, const std::string& title, const WindowFrame& size) {
    XClient& x = desktop.x();
    const bool ok = waitFor([&] {
        const auto window = x.managedWindow(title);
        const auto frame = window ? x.frame(*window) : std::nullopt;
        return frame && frame->width == size.width && frame->height == size.height &&
               x.isViewable(*window);
    });
    const auto window = x.managedWindow(title);
    const auto frame = window ? x.frame(*window) : std::nullopt;
    return {.ok = ok, .text = "\"" + title + "\" " + (frame ? describe(*frame) : "absent")};
}

Seen startASecond(Desktop& desktop, const std::string& option, const std::string& title,
                  const WindowFrame& size) {
    const std::size_t items = desktop.items().size();
    const auto second = desktop.display().start({(builtPrograms() / "pelistra").string(), option});
    const bool ended = second->waitForExit() == ExitStatus{.status = 0};
    Seen seen = lookAtWindow(desktop, title, size);
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
        return lookAtWindow(desktop, "Pelistra Settings", settingsSize);
    });
    tour.step("Close the settings", [&] { return closeWindows(desktop); });
    tour.step("Start a second organiser with --show-settings", [&] {
        return startASecond(desktop, "--show-settings", "Pelistra Settings", settingsSize);
    });
    tour.step("Start a second organiser with --show-onboarding", [&] {
        return startASecond(desktop, "--show-onboarding", "Welcome to Pelistra", onboardingSize);
    });
    tour.step("Close both windows", [&] { return closeWindows(desktop); });
}

} // namespace pelistra::testing
