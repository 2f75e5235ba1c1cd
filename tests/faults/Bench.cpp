#include "tests/faults/Bench.h"

#include <algorithm>
#include <stdexcept>
#include <string>

namespace pelistra::testing {

namespace {

constexpr const char* settingsTitle = "Pelistra Settings";
constexpr const char* onboardingTitle = "Welcome to Pelistra";
// Where nothing is.
constexpr RootPoint outside{.x = 300, .y = 700};
// A click may do no more than close a menu that has come late: the next one comes soon.
constexpr int attempts = 16;
constexpr std::chrono::milliseconds attemptTime{1500};
// A click that follows another one sooner would not count.
constexpr std::chrono::milliseconds restTime{450};

// A nested screen must be low enough to be turned.
Desktop::Size sizeFor(PrivateDisplay::Server server) {
    Desktop::Size size;
    size.server = server;
    if (server == PrivateDisplay::Server::Nested) {
        constexpr int width = 1200;
        size.width = width;
    }
    return size;
}

} // namespace

void demand(bool reached, const std::string& what) {
    if (!reached) {
        throw std::runtime_error(what);
    }
}

void letPass(std::chrono::milliseconds time) {
    static_cast<void>(staysTrue([] { return true; }, time));
}

const char* nameOf(Situation situation) {
    switch (situation) {
    case Situation::Expanded:
        return "expanded";
    case Situation::Collapsed:
        return "collapsed";
    case Situation::RowOpen:
        return "row open";
    case Situation::Revealed:
        return "icon revealed, its menu open";
    case Situation::SettingsOpen:
        return "settings open";
    case Situation::OnboardingOpen:
        return "introduction open";
    }
    return "";
}

Bench::Bench(PrivateDisplay::Server server)
    : server_(server), desktop_(sizeFor(server)), tree_(desktop_.display()) {
    AccessibleTree::letProgramsSpeak(desktop_.display());
    desktop_.startBar();
    for (const std::string& program : programs()) {
        desktop_.startProgram(program);
    }
    desktop_.startOrganiser();
    demand(desktop_.waitUntilExpanded(), "the desktop does not come to rest");
    firstOrder_ = foreignOrder();
}

void Bench::bringInto(Situation situation) {
    demand(calm(), "the section cannot be expanded");
    switch (situation) {
    case Situation::Expanded:
        break;
    case Situation::Collapsed:
        collapse();
        break;
    case Situation::RowOpen:
        collapse();
        openRow();
        break;
    case Situation::Revealed:
        openMenu();
        break;
    case Situation::SettingsOpen:
        openWindow("--show-settings", settingsTitle);
        break;
    case Situation::OnboardingOpen:
        openWindow("--show-onboarding", onboardingTitle);
        break;
    }
}

void Bench::collapse() {
    for (int attempt = 0; attempt < attempts; ++attempt) {
        SecondRowUnderTest::letTheArrowRest();
        if (desktop_.clickControl() && desktop_.waitUntilCollapsed(attemptTime)) {
            return;
        }
    }
    throw std::runtime_error("the section cannot be collapsed: " + description());
}

void Bench::openRow() {
    // Where the machine is so busy that a collapse took two clicks, the second one opens the row
    // and this one closes it.
    if (!row_.open() && !row_.open()) {
        throw std::runtime_error("the row does not open: " + description());
    }
}

void Bench::reveal(const std::string& className) {
    demand(calm(), "the section cannot be expanded");
    collapse();
    openRow();
    clickForMenu(className);
}

void Bench::clickForMenu(const std::string& className) {
    desktop_.input().click(centre(rowIcon(className).frame), UserInput::Button::Right);
    demand(waitFor([&] {
               const auto item = desktop_.item(className);
               return item && item->frame.x >= 0;
           }),
           "the icon is not revealed");
}

SecondRowUnderTest::Icon Bench::rowIcon(const std::string& className) {
    // The row shows the hidden items in the bar's order.
    const auto hidden = desktop_.hiddenSection();
    const auto icons = row_.icons();
    const auto place = std::ranges::find(hidden, className, &Desktop::Item::className);
    demand(place != hidden.end() && icons.size() == hidden.size(),
           "the row lacks the icon of " + className + ": " + description());
    return icons[static_cast<std::size_t>(place - hidden.begin())];
}

void Bench::openMenu() {
    collapse();
    openRow();
    const std::size_t before = desktop_.x().shownTopLevels().size();
    clickForMenu("Nabi");
    // The row goes, the menu comes.
    demand(
        waitFor([&] { return !row_.isOpen() && desktop_.x().shownTopLevels().size() >= before; }),
        "no menu opens");
}

void Bench::awaitRest(Situation situation) {
    const bool isExpanded = situation == Situation::Expanded ||
                            situation == Situation::SettingsOpen ||
                            situation == Situation::OnboardingOpen;
    if (!(isExpanded ? desktop_.waitUntilExpanded() : desktop_.waitUntilCollapsed())) {
        throw std::runtime_error("the section does not come to rest: " + description());
    }
}

void Bench::openWindow(const std::string& option, const char* title) {
    const auto second = desktop_.display().start({(builtPrograms() / "pelistra").string(), option});
    demand(second->waitForExit() == ExitStatus{.status = 0}, "the organiser takes no orders");
    demand(waitForValue([&] { return desktop_.x().managedWindow(title); }).has_value(),
           std::string("no window ") + title);
}

bool Bench::isCalm() {
    return !desktop_.organiser().isCollapsed() && desktop_.everythingIsOnScreen() &&
           !row_.isOpen() && desktop_.organiserWindows().empty();
}

bool Bench::calm() {
    // A window or a menu may be on its way.
    const auto staysCalm = [this] { return staysTrue([this] { return isCalm(); }, restTime); };
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (staysCalm()) {
            return true;
        }
        for (const xcb_window_t window : desktop_.organiserWindows()) {
            desktop_.x().requestClose(window);
        }
        // Closes menus and the row.
        desktop_.input().click(outside);
        if (waitFor([this] { return isCalm(); }, restTime)) {
            continue;
        }
        static_cast<void>(desktop_.clickControl(UserInput::Button::Left, {keys::alt}));
        static_cast<void>(waitFor([this] { return isCalm(); }, attemptTime));
    }
    return staysCalm();
}

void Bench::restartBar() {
    desktop_.startBar();
}

void Bench::restartOrganiser() {
    desktop_.startOrganiser();
}

void Bench::killProgram(const std::string& program) {
    desktop_.program(program).kill();
}

void Bench::restartProgram(const std::string& program) {
    desktop_.endProgram(program);
    desktop_.startProgram(program);
}

std::string Bench::description() {
    std::string text = "on the bar:";
    for (const auto& item : desktop_.items()) {
        text += " " + item.className + "@" + std::to_string(item.frame.x) + "+" +
                std::to_string(item.frame.width);
    }
    text += row_.isOpen() ? "; the row is open with:" : "; the row is closed";
    for (const auto& icon : row_.icons()) {
        text += " '" + icon.name + "'";
    }
    text += "; menus shown: " + std::to_string(desktop_.x().shownMenus().size());
    constexpr std::size_t length = 1500;
    const std::string log = desktop_.organiser().process().output();
    return text + "; the organiser's last words:\n" +
           log.substr(log.size() > length ? log.size() - length : 0);
}

const std::vector<std::string>& Bench::programs() {
    static const std::vector<std::string> all{"nabi", "volumeicon", "pnmixer", "qlipper",
                                              "qmidinet"};
    return all;
}

std::vector<std::string> Bench::classNames() {
    std::vector<std::string> names;
    for (const std::string& program : programs()) {
        names.push_back(realTrayProgram(program).className);
    }
    return names;
}

std::vector<std::string> Bench::foreignOrder() {
    std::vector<std::string> names = desktop_.order();
    const std::vector<std::string> known = classNames();
    std::erase_if(names,
                  [&](const std::string& name) { return std::ranges::count(known, name) == 0; });
    return names;
}

} // namespace pelistra::testing
