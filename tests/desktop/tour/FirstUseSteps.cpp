#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/WindowsUnderTest.h"
#include "tests/desktop/tour/Tour.h"

#include <algorithm>
#include <array>

namespace pelistra::testing {

namespace {

constexpr const char* loginSwitch = "登录时启动 Pelistra";
constexpr const char* stepsText = "第 ";

// What the caption of each step ends with.
constexpr std::array<const char*, introductionSteps> stepNames{"欢迎", "认识分隔线", "摆放图标",
                                                               "完成"};

std::filesystem::path defaultsOf(Desktop& desktop) {
    return desktop.display().configFolder() / "pelistra" / "defaults";
}

constexpr const char* completed = "hasCompletedOnboarding." PELISTRA_VERSION "=true";

bool hasCompleted(Desktop& desktop) {
    return contentOf(defaultsOf(desktop)).find(completed) != std::string::npos;
}

class FirstUse {
public:
    explicit FirstUse(Tour& tour)
        : tour_(tour), desktop_(tour.desktop()), windows_(tour.desktop(), tour.tree()) {}

    void walkOnboarding();
    void walkSettings();

private:
    void walkForward(int step);
    Seen startFresh();
    // Whether the caption says that step; `how` is what has led to it.
    Seen atStep(int step, const std::string& how);
    Seen turnOnByClick();
    Seen turnOffByKeys();
    Seen finish();
    Seen moveByBackground();
    Seen closeUnfinished();
    Seen openSettings();
    Seen openGuide();
    bool becomesActive(const char* title);
    Seen quit();
    Seen entryIs(bool on, const std::string& how);

    Tour& tour_;
    Desktop& desktop_;
    WindowsUnderTest windows_;
};

Seen FirstUse::startFresh() {
    std::filesystem::remove(defaultsOf(desktop_));
    desktop_.startBar();
    for (const char* program : {"nabi", "pnmixer", "qmidinet"}) {
        desktop_.startProgram(program);
    }
    desktop_.startOrganiser();
    const Seen seen = lookAtWindow(desktop_, onboardingTitle, onboardingWidth, onboardingHeight);
    const Seen step = atStep(1, "it");
    const auto window = desktop_.x().managedWindow(onboardingTitle);
    const bool isBare = window && desktop_.x().words(*window, "_NET_FRAME_EXTENTS") ==
                                      std::vector<std::uint32_t>{0, 0, 0, 0};
    return {.ok = seen.ok && step.ok && isBare,
            .text = seen.text + (isBare ? " without a frame, " : " with a frame, ") + step.text};
}

Seen FirstUse::atStep(int step, const std::string& how) {
    const std::string caption = stepsText + std::to_string(step) + " 步，共 4 步  ·  " +
                                stepNames.at(static_cast<std::size_t>(step - 1));
    const bool ok = waitFor([&] { return windows_.says(caption); });
    return {.ok = ok, .text = how + (ok ? " says \"" : " does not say \"") + caption + "\""};
}

// The entry as the desktop will read it at the next login.
Seen FirstUse::entryIs(bool on, const std::string& how) {
    const std::filesystem::path entry =
        desktop_.display().configFolder() / "autostart" / "pelistra.desktop";
    const std::string program = "Exec=\"" + (builtPrograms() / "pelistra").string() + "\"";
    const bool written = waitFor([&] {
        return (contentOf(entry).find(program) != std::string::npos) == on &&
               windows_.isChecked(loginSwitch) == on;
    });
    return {.ok = written,
            .text = how + (written ? (on ? "the switch is on, the autostart entry says " + program
                                         : "the switch is off, the autostart entry is gone")
                                   : "switch and autostart entry do not agree")};
}

Seen FirstUse::turnOnByClick() {
    return windows_.clickSwitch(loginSwitch) ? entryIs(true, "") : Seen{.text = "no switch"};
}

Seen FirstUse::turnOffByKeys() {
    const bool focused = windows_.moveFocusTo(loginSwitch);
    desktop_.input().tapKey(keys::space);
    Seen seen =
        entryIs(false, focused ? "Tab has reached the switch; " : "Tab does not reach it; ");
    seen.ok = seen.ok && focused;
    return seen;
}

Seen FirstUse::finish() {
    const bool clicked = windows_.click("开始使用 Pelistra");
    const bool closed = clicked && waitFor([&] { return desktop_.organiserWindows().empty(); });
    const bool kept = waitFor([&] { return hasCompleted(desktop_); });
    return {.ok = closed && kept,
            .text = kept ? std::string("no window is left; the defaults say ") + completed
                         : "the defaults do not say that it is done"};
}

Seen FirstUse::moveByBackground() {
    const auto window = desktop_.x().managedWindow(onboardingTitle);
    const auto before = window ? desktop_.x().frame(*window) : std::nullopt;
    if (!before) {
        return {.ok = false, .text = "no window"};
    }
    constexpr int distance = 60;
    const RootPoint from{.x = before->midX(), .y = before->y + 40};
    desktop_.input().drag(from, {.x = from.x - distance, .y = from.y + distance}, {});
    const bool moved = waitFor([&] {
        const auto now = desktop_.x().frame(*window);
        return now && now->x < before->x && now->y > before->y && now->width == before->width;
    });
    return {.ok = moved, .text = "it is " + describe(*desktop_.x().frame(*window))};
}

Seen FirstUse::closeUnfinished() {
    const bool clicked = windows_.click("关闭");
    const bool closed = clicked && waitFor([&] { return desktop_.organiserWindows().empty(); });
    const bool notDone = !hasCompleted(desktop_);
    desktop_.organiser().process().terminate();
    desktop_.startOrganiser();
    const Seen again = lookAtWindow(desktop_, onboardingTitle, onboardingWidth, onboardingHeight);
    return {.ok = closed && notDone && again.ok,
            .text = std::string(closed ? "closed" : "not closed") +
                    (notDone ? ", not done, and back at the next start: " : ", counts as done: ") +
                    again.text};
}

bool FirstUse::becomesActive(const char* title) {
    const auto window = desktop_.x().managedWindow(title);
    return waitFor([&] {
        return window && desktop_.x().words(desktop_.x().root(), "_NET_ACTIVE_WINDOW") ==
                             std::vector<std::uint32_t>{*window};
    });
}

Seen FirstUse::openSettings() {
    SecondRowUnderTest::letTheArrowRest();
    if (!desktop_.clickControl(UserInput::Button::Right)) {
        return {.ok = false, .text = "no arrow"};
    }
    const Seen seen = lookAtWindow(desktop_, settingsTitle, settingsWidth, settingsHeight);
    const bool texts = waitFor([&] {
        return std::ranges::all_of(std::array{"使用方法", "找到分隔线", "摆放图标", "点击箭头",
                                              "使用第二行", "通用", "登录时启动 Pelistra",
                                              "重新查看使用引导", "退出 Pelistra"},
                                   [&](const char* text) { return windows_.says(text); });
    });
    const bool isActive = becomesActive(settingsTitle);
    return {.ok = seen.ok && texts && isActive,
            .text = seen.text + (texts ? ", with all its texts" : ", texts missing") +
                    (isActive ? ", active" : ", not active")};
}

Seen FirstUse::openGuide() {
    const bool clicked = windows_.click("重新查看使用引导");
    Seen seen = lookAtWindow(desktop_, onboardingTitle, onboardingWidth, onboardingHeight);
    // Openbox gives nobody the keyboard back that a window has never had.
    const bool isActive = becomesActive(onboardingTitle);
    if (const auto window = desktop_.x().managedWindow(onboardingTitle)) {
        desktop_.x().requestClose(*window);
    }
    seen.ok = seen.ok && clicked && isActive &&
              waitFor([&] { return desktop_.organiserWindows().size() == 1; });
    return seen;
}

Seen FirstUse::quit() {
    const std::size_t icons = desktop_.items().size() - 2;
    const bool opened = openSettings().ok;
    const bool clicked = opened && windows_.click("退出 Pelistra");
    const auto status = desktop_.organiser().process().waitForExit();
    const bool back = waitFor(
        [&] { return desktop_.items().size() == icons && desktop_.everythingIsOnScreen(); });
    return {.ok = clicked && status == ExitStatus{.status = 0} && back,
            .text = std::string(status ? "the organiser has ended" : "the organiser is running") +
                    ", " + describe(desktop_.items()) + " on the screen"};
}

void FirstUse::walkForward(int step) {
    tour_.step("Click the forward button, to step " + std::to_string(step), [&] {
        return windows_.click("继续") ? atStep(step, "the caption") : Seen{.text = "no button"};
    });
}

void FirstUse::walkOnboarding() {
    tour_.step("Start the organiser for the first time", [&] { return startFresh(); });
    tour_.step("Drag the window by its background", [&] { return moveByBackground(); });
    tour_.step("Close the unfinished guide and start again", [&] { return closeUnfinished(); });
    tour_.step("Press Return", [&] {
        desktop_.input().tapKey(keys::enter);
        return atStep(2, "the caption");
    });
    tour_.step("Click the back button", [&] {
        return windows_.click("返回") ? atStep(1, "the caption") : Seen{.text = "no button"};
    });
    walkForward(2);
    walkForward(3);
    tour_.step("Click the switch of the start at login", [&] { return turnOnByClick(); });
    tour_.step("Switch it off with Tab and Space", [&] { return turnOffByKeys(); });
    walkForward(4);
    tour_.step("Click the last button", [&] { return finish(); });
}

void FirstUse::walkSettings() {
    tour_.step("Right-click the arrow for the settings", [&] { return openSettings(); });
    tour_.step("Click the button of the guide, close the guide", [&] { return openGuide(); });
    tour_.step("Click the button that ends Pelistra", [&] { return quit(); });
}

} // namespace

void walkFirstUse(Tour& tour) {
    tour.beginDesktop({});
    FirstUse use(tour);
    use.walkOnboarding();
    use.walkSettings();
}

} // namespace pelistra::testing
