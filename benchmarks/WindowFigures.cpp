#include "benchmarks/WindowFigures.h"

#include "benchmarks/ScreenWatch.h"
#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <thread>

namespace pelistra::testing {

namespace {

constexpr const char* settingsTitle = "Pelistra Settings";
constexpr const char* onboardingTitle = "Welcome to Pelistra";
constexpr const char* guideButton = "重新查看使用引导";
constexpr const char* firstProgram = "nabi";
constexpr double mostMilliseconds = 150;

// One of the organiser's windows on a desktop: how it is opened, where it is, how it looks.
class TimedWindow {
public:
    TimedWindow(Desktop& desktop, ScreenWatch& watch, std::string title)
        : desktop_(desktop), watch_(watch), title_(std::move(title)) {}

    [[nodiscard]] std::optional<xcb_window_t> window() {
        return desktop_.x().managedWindow(title_);
    }
    [[nodiscard]] bool isOpen() {
        const auto shown = window();
        return shown && desktop_.x().isViewable(*shown);
    }
    // Remembers the place of the open window once nothing in it changes.
    void learn() {
        constexpr std::chrono::milliseconds calm{300};
        require(waitFor([this] { return isOpen(); }), title_ + " does not open");
        Picture before;
        require(waitFor([&] {
                    frame_ = desktop_.x().frame(window().value()).value();
                    before = picture_;
                    picture_ = desktop_.x().capture(frame_);
                    std::this_thread::sleep_for(calm);
                    return picture_ == before;
                }),
                title_ + " never comes to rest");
    }
    [[nodiscard]] bool isKnown() const { return picture_.width() > 0; }
    // Clicks there and waits until the screen shows the window as it stays: the time from the
    // release of the button.
    [[nodiscard]] double timeToShow(RootPoint place, UserInput::Button button) {
        desktop_.input().moveTo(place);
        desktop_.input().press(button);
        watch_.forget();
        const auto begin = Clock::now();
        desktop_.input().release(button);
        constexpr std::chrono::milliseconds calm{500};
        const auto shown = watch_.whenFinal(frame_, calm, patience);
        require(shown.has_value() && isOpen() && desktop_.x().frame(window().value()) == frame_,
                title_ + " does not come to rest where it was before");
        return Milliseconds(*shown - begin).count();
    }
    void close() {
        desktop_.x().requestClose(window().value());
        require(waitFor([this] { return !window(); }), title_ + " does not close");
    }

private:
    Desktop& desktop_;
    ScreenWatch& watch_;
    std::string title_;
    WindowFrame frame_;
    Picture picture_;
};

RootPoint arrowOf(Desktop& desktop) {
    return centre(desktop.organiser().controlFrame().value());
}

// Where the guide's button is, as a screen reader hears it; the organiser speaks only for that.
RootPoint findGuideButton(const PrivateDisplay::Options& screen) {
    Desktop desktop(screen);
    AccessibleTree tree(desktop.display());
    AccessibleTree::letProgramsSpeak(desktop.display());
    desktop.startBar();
    desktop.startOrganiser();
    require(desktop.clickControl(UserInput::Button::Right), "no arrow");
    const pid_t organiser = desktop.organiser().process().pid();
    std::optional<WindowFrame> last;
    require(waitFor([&] {
                const auto element = tree.find(organiser, guideButton);
                const auto now = element ? std::optional(element->frame) : std::nullopt;
                const bool rests = now && now == last;
                last = now;
                return rests;
            }),
            "the settings have no button for the guide");
    return centre(*last);
}

struct Times {
    std::vector<double> settingsFirst;
    std::vector<double> settingsLater;
    std::vector<double> onboardingFirst;
    std::vector<double> onboardingLater;
};

void timeShowing(const Effort& effort, Section& section) {
    const PrivateDisplay::Options screen{.width = 1920, .height = 1080};
    const RootPoint guide = findGuideButton(screen);
    Desktop desktop(screen);
    desktop.startBar();
    desktop.startProgram(firstProgram);
    ScreenWatch watch(desktop.display().name());
    TimedWindow settings(desktop, watch, settingsTitle);
    TimedWindow onboarding(desktop, watch, onboardingTitle);
    Times times;
    for (int start = 0; start <= effort.starts; ++start) {
        desktop.startOrganiser();
        std::this_thread::sleep_for(longerThanLatch);
        if (!settings.isKnown()) {
            require(desktop.clickControl(UserInput::Button::Right), "no arrow");
            settings.learn();
            desktop.input().click(guide);
            onboarding.learn();
            continue;
        }
        for (int round = 0; round < std::max(2, effort.rounds / effort.starts); ++round) {
            (round == 0 ? times.settingsFirst : times.settingsLater)
                .push_back(settings.timeToShow(arrowOf(desktop), UserInput::Button::Right));
            (round == 0 ? times.onboardingFirst : times.onboardingLater)
                .push_back(onboarding.timeToShow(guide, UserInput::Button::Left));
            onboarding.close();
            settings.close();
            std::this_thread::sleep_for(longerThanLatch);
        }
    }
    const auto add = [&](const std::string& what, const std::vector<double>& values) {
        section.figures.push_back({.what = "click to the whole " + what,
                                   .spread = spreadOf(values),
                                   .unit = "ms",
                                   .limit = atMost(mostMilliseconds)});
    };
    add("settings on the screen, first", times.settingsFirst);
    add("settings on the screen, later", times.settingsLater);
    add("onboarding on the screen, first", times.onboardingFirst);
    add("onboarding on the screen, later", times.onboardingLater);
}

Memory memoryAfterOnboarding(bool withOnboarding) {
    Desktop desktop({.width = 1920, .height = 1080});
    desktop.startBar();
    desktop.startProgram(firstProgram);
    if (withOnboarding) {
        std::filesystem::remove(desktop.display().configFolder() / "pelistra" / "defaults");
    }
    desktop.startOrganiser();
    if (withOnboarding) {
        require(waitFor([&] { return desktop.organiserWindows().size() == 1; }),
                "the onboarding does not open");
        constexpr int steps = 4;
        constexpr std::chrono::milliseconds motion{1'200};
        for (int step = 0; step < steps; ++step) {
            std::this_thread::sleep_for(motion);
            desktop.input().tapKey(keys::enter);
        }
        require(waitFor([&] { return desktop.organiserWindows().empty(); }),
                "the onboarding does not end");
    }
    return settledMemoryOf(desktop.organiser().process().pid());
}

void weighOnboarding(const Effort& effort, Section& section) {
    std::vector<double> without;
    std::vector<double> difference;
    std::vector<double> proportional;
    for (int start = 0; start < effort.starts; ++start) {
        const Memory before = memoryAfterOnboarding(false);
        const Memory after = memoryAfterOnboarding(true);
        without.push_back(before.own);
        difference.push_back(after.own - before.own);
        proportional.push_back(after.proportional - before.proportional);
    }
    constexpr double mostMemory = 2;
    section.figures.push_back({.what = "own memory of the organiser that never showed a window",
                               .spread = spreadOf(without),
                               .unit = "MiB"});
    section.figures.push_back({.what = "more of it after a finished onboarding",
                               .spread = spreadOf(difference),
                               .unit = "MiB",
                               .limit = atMost(mostMemory)});
    section.figures.push_back({.what = "more proportional memory after a finished onboarding",
                               .spread = spreadOf(proportional),
                               .unit = "MiB"});
}

void weighSettings(const Effort& effort, Section& section) {
    Desktop desktop({.width = 1920, .height = 1080});
    desktop.startBar();
    desktop.startOrganiser();
    ScreenWatch watch(desktop.display().name());
    TimedWindow settings(desktop, watch, settingsTitle);
    const auto openAndClose = [&](int times) {
        for (int opening = 0; opening < times; ++opening) {
            std::this_thread::sleep_for(longerThanLatch);
            require(desktop.clickControl(UserInput::Button::Right) &&
                        waitFor([&] { return settings.isOpen(); }),
                    "the settings do not open");
            settings.close();
        }
    };
    constexpr int firstUse = 10;
    openAndClose(firstUse);
    const pid_t organiser = desktop.organiser().process().pid();
    const double before = settledMemoryOf(organiser).own;
    openAndClose(effort.settingsOpenings);
    const double growth = settledMemoryOf(organiser).own - before;
    constexpr double noise = 0.5;
    section.figures.push_back({.what = "growth of the organiser's own memory by " +
                                       std::to_string(effort.settingsOpenings) +
                                       " openings of the settings",
                               .spread = spreadOf({growth}),
                               .unit = "MiB",
                               .limit = atMost(noise)});
}

} // namespace

Section windowFigures(const Effort& effort) {
    Section section{.title = "Settings and onboarding", .figures = {}};
    timeShowing(effort, section);
    return section;
}

Section windowMemoryFigures(const Effort& effort) {
    Section section{.title = "Memory of windows that have gone", .figures = {}};
    weighOnboarding(effort, section);
    weighSettings(effort, section);
    return section;
}

} // namespace pelistra::testing
