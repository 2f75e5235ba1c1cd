#include "platform/linux/screens/X11Screens.h"

#include "platform/linux/screens/RootFrame.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include <xcb/randr.h>

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
    if (const auto* randr = connection_.extension(xcb_randr_id)) {
        // Monitors came with version 1.5; the server answers in the version that it was asked for.
        constexpr std::uint32_t major = 1;
        constexpr std::uint32_t minor = 5;
        const auto version = connection_.take<xcb_randr_query_version_reply_t>(
            xcb_randr_query_version(connection_.get(), major, minor));
        if (version && (version->major_version > major || version->minor_version >= minor)) {
            randrEvent_ = randr->first_event;
            xcb_randr_select_input(
                connection_.get(), connection_.root(),
                XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                    XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE | XCB_RANDR_NOTIFY_MASK_RESOURCE_CHANGE);
        }
    }
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
    std::vector<Monitor> result;
    if (randrEvent_ == 0) {
        if (const auto root = rootFrameOf(connection_, connection_.root())) {
            result.push_back({.frame = *root, .isPrimary = true});
        }
        return result;
    }
    const auto reply = connection_.take<xcb_randr_get_monitors_reply_t>(
        xcb_randr_get_monitors(connection_.get(), connection_.root(), 1));
    if (!reply) {
        return result;
    }
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(reply.get()); monitor.rem != 0;
         xcb_randr_monitor_info_next(&monitor)) {
        const auto& info = *monitor.data;
        result.push_back(
            {.frame = {.x = info.x, .y = info.y, .width = info.width, .height = info.height},
             .isPrimary = info.primary != 0});
    }
    return result;
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
    const int type = x11::typeOf(event);
    const bool isRandr =
        randrEvent_ != 0 && (type == randrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY ||
                             type == randrEvent_ + XCB_RANDR_NOTIFY);
    const bool isRoot =
        type == XCB_CONFIGURE_NOTIFY &&
        x11::eventAs<xcb_configure_notify_event_t>(event).window == connection_.root();
    if (isRandr || isRoot) {
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
