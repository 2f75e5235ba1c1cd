#include "platform/linux/screens/X11Screens.h"

#include "platform/linux/screens/RootFrame.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

namespace pelistra::linux {

namespace {

constexpr std::size_t rectWords = 4;

} // namespace

X11Screens::X11Screens(x11::Connection& connection, EventPump& pump, TrayHost& trayHost,
                       MainQueue& mainQueue)
    : connection_(connection), trayHost_(trayHost), mainQueue_(mainQueue) {
    const auto atoms = x11::internAtoms(
        connection_, std::array<std::string_view, 2>{"_NET_WORKAREA", "_NET_CURRENT_DESKTOP"});
    workAreaAtom_ = atoms[0];
    currentDesktopAtom_ = atoms[1];
    x11::watchMonitors(connection_);
    lastScreens_ = screens();
    events_ = pump.addHandler([this](const auto& event) { handle(event); });
    recoveries_ = pump.addRecoveryHandler([this] { scheduleComparison(); });
    trayChanges_ = trayHost_.observe([this](TrayHost::Change) { scheduleComparison(); });
}

std::vector<Screen> X11Screens::screens() const {
    return screensFrom(facts());
}

std::optional<Screen> X11Screens::main() const {
    const auto all = screens();
    if (all.empty()) {
        return std::nullopt;
    }
    const auto point = focusedPoint();
    const auto found = std::ranges::find_if(
        all, [&point](const Screen& screen) { return point && screen.frame.contains(*point); });
    return found == all.end() ? all.front() : *found;
}

SubscriptionPtr X11Screens::observeParameterChanges(std::function<void()> handler) {
    return observers_.add(std::move(handler));
}

Coordinates X11Screens::coordinates() const {
    const std::uint64_t unanswered = connection_.unanswered();
    ScreenFacts facts;
    facts.monitors = monitors();
    facts.scale = trayHost_.scale();
    return coordinatesFrom(connection_.unanswered() == unanswered ? facts : lastFacts_);
}

ScreenFacts X11Screens::facts() const {
    const std::uint64_t unanswered = connection_.unanswered();
    ScreenFacts facts;
    facts.monitors = monitors();
    facts.scale = trayHost_.scale();
    facts.workArea = workArea();
    if (const auto& tray = trayHost_.tray()) {
        facts.barStrut = tray->strut;
        facts.auxiliaryAreas = tray->auxiliaryAreas;
    }
    // The root as the server has it now: what the connection was told at its start ages.
    facts.root = rootFrameOf(connection_, connection_.root()).value_or(RootRect{});
    if (connection_.unanswered() == unanswered) {
        lastFacts_ = facts;
    }
    return lastFacts_;
}

std::vector<Monitor> X11Screens::monitors() const {
    if (connection_.hasMonitors()) {
        return x11::takeMonitors(connection_, x11::requestMonitors(connection_));
    }
    const auto root = rootFrameOf(connection_, connection_.root());
    return root ? std::vector{Monitor{.frame = *root, .isPrimary = true}} : std::vector<Monitor>{};
}

std::optional<RootRect> X11Screens::workArea() const {
    const auto areaRequest =
        x11::requestProperty(connection_, connection_.root(), workAreaAtom_, XCB_ATOM_CARDINAL);
    const auto desktopRequest = x11::requestProperty(connection_, connection_.root(),
                                                     currentDesktopAtom_, XCB_ATOM_CARDINAL);
    const auto areaValue = x11::readProperty(connection_, areaRequest);
    const auto desktopValue = x11::readProperty(connection_, desktopRequest);
    const auto areas = areaValue ? areaValue->words() : std::vector<std::uint32_t>();
    const auto desktops = desktopValue ? desktopValue->words() : std::vector<std::uint32_t>();
    const std::size_t desktop = desktops.empty() ? 0 : desktops.front();
    if (areas.size() / rectWords <= desktop) {
        return std::nullopt;
    }
    return rootRectIn(std::span(areas).subspan(desktop * rectWords, rectWords));
}

std::optional<ScreenPoint> X11Screens::focusedPoint() const {
    const auto focus =
        connection_.take<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_.get()));
    // None and PointerRoot are no windows.
    if (!focus || focus->focus <= XCB_INPUT_FOCUS_POINTER_ROOT ||
        focus->focus == connection_.root()) {
        return std::nullopt;
    }
    const auto frame = rootFrameOf(connection_, focus->focus);
    if (!frame) {
        return std::nullopt;
    }
    return coordinates().toScreen(frame->x + frame->width / 2, frame->y + frame->height / 2);
}

void X11Screens::handle(const xcb_generic_event_t& event) {
    const bool isRoot =
        x11::typeOf(event) == XCB_CONFIGURE_NOTIFY &&
        x11::eventAs<xcb_configure_notify_event_t>(event).window == connection_.root();
    if (isRoot || x11::isMonitorChange(connection_, event)) {
        scheduleComparison();
    }
}

void X11Screens::scheduleComparison() {
    if (!std::exchange(comparisonIsScheduled_, true)) {
        mainQueue_.async(lifetime_.guard([this] { compare(); }));
    }
}

void X11Screens::compare() {
    comparisonIsScheduled_ = false;
    const auto before = std::exchange(lastScreens_, screens());
    if (before != lastScreens_) {
        observers_.call();
    }
}

} // namespace pelistra::linux
