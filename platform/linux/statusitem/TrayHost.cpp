#include "platform/linux/statusitem/TrayHost.h"

#include "platform/linux/screens/DisplayScale.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <span>
#include <string>
#include <utility>

namespace pelistra::linux {

namespace {

using Words = std::vector<std::uint32_t>;

// Of the system-tray protocol.
constexpr std::uint32_t requestDockOpcode = 0;
constexpr std::size_t colorsCount = 12;

Words wordsOf(const x11::Connection& connection, x11::PropertyRequest request) {
    const auto value = x11::readProperty(connection, request);
    return value ? value->words() : Words();
}

std::optional<ui::Rgb> foregroundIn(const Words& colors) {
    constexpr std::uint32_t mostOfChannel = 0xffff;
    constexpr unsigned toByte = 8;
    if (colors.size() != colorsCount || std::ranges::any_of(colors, [](std::uint32_t channel) {
            return channel > mostOfChannel;
        })) {
        return std::nullopt;
    }
    const auto channel = [&colors](std::size_t index) {
        return static_cast<std::uint8_t>(colors[index] >> toByte);
    };
    return ui::Rgb{.red = channel(0), .green = channel(1), .blue = channel(2)};
}

} // namespace

TrayHost::TrayHost(x11::Connection& connection, EventPump& pump, LogSink& log)
    : connection_(connection), pump_(pump), logger_(log, "menu-bar") {
    const std::string selection = x11::traySelectionName(connection_.screenNumber());
    const std::array<std::string_view, NameCount> names{selection,
                                                        "MANAGER",
                                                        "_NET_SYSTEM_TRAY_OPCODE",
                                                        "_NET_SYSTEM_TRAY_VISUAL",
                                                        "_NET_SYSTEM_TRAY_COLORS",
                                                        "_PELISTRA_MENUBAR_WINDOW",
                                                        "_PELISTRA_MENUBAR_ITEMS",
                                                        "_PELISTRA_MENUBAR_ITEM_DETAILS",
                                                        "_PELISTRA_MENUBAR_SERIAL",
                                                        "_PELISTRA_MENUBAR_SCALE",
                                                        "_PELISTRA_MENUBAR_AUXILIARY_AREAS",
                                                        "_NET_WM_STRUT_PARTIAL"};
    atoms_ = x11::internAtoms(connection_, names);
    // Before the first look, so that a tray that comes meanwhile is not missed.
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_.get(), connection_.root(), XCB_CW_EVENT_MASK, &mask);
    earlyEvents_ = pump.addEarlyHandler([this](const auto& event) { noteChange(event); });
    events_ = pump.addHandler([this](const auto& event) { handle(event); });
    recoveries_ = pump.addRecoveryHandler([this] { recover(); });
}

void TrayHost::start() {
    look();
    if (!tray_) {
        logger_.info("There is no menu bar yet; waiting for one");
    }
}

bool isLight(const ui::Rgb& foreground) {
    constexpr int lightestDark = 127;
    const auto [darkest, lightest] =
        std::minmax({foreground.red, foreground.green, foreground.blue});
    return (darkest + lightest) / 2 > lightestDark;
}

std::optional<bool> TrayHost::barIsDark() const {
    return tray_ && tray_->barWindow != XCB_WINDOW_NONE && tray_->foreground
               ? std::optional(isLight(*tray_->foreground))
               : std::nullopt;
}

double TrayHost::scale() const {
    if (tray_ && tray_->scale) {
        return *tray_->scale;
    }
    const std::uint64_t unanswered = connection_.unanswered();
    const double scale = resourceScale(connection_).value_or(1);
    if (connection_.unanswered() == unanswered) {
        resourceScale_ = scale;
    }
    return resourceScale_;
}

std::optional<std::vector<std::uint32_t>> TrayHost::dockedWindows() const {
    if (!tray_ || tray_->barWindow == XCB_WINDOW_NONE) {
        return std::nullopt;
    }
    return wordsOf(connection_, x11::requestProperty(connection_, tray_->owner, atoms_[BarItems],
                                                     XCB_ATOM_WINDOW));
}

std::optional<std::uint64_t> TrayHost::changesOf(xcb_window_t owner) const {
    return pump_.fetch() && tray_ && tray_->owner == owner ? std::optional(changes_) : std::nullopt;
}

void TrayHost::requestDock(xcb_window_t window) const {
    if (!tray_) {
        return;
    }
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = tray_->owner;
    message.type = atoms_[Opcode];
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = requestDockOpcode;
    message.data.data32[2] = window;
    xcb_send_event(connection_.get(), 0, tray_->owner, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&message));
}

SubscriptionPtr TrayHost::observe(std::function<void(Change)> handler) {
    return observers_.add(std::move(handler));
}

void TrayHost::noteChange(const xcb_generic_event_t& event) {
    // The first type that is no event of the core protocol: RandR's among others.
    constexpr int firstOfExtensions = 64;
    const auto isOfTray = [this](xcb_window_t window) { return tray_ && window == tray_->owner; };
    const int type = x11::typeOf(event);
    bool isChange = type >= firstOfExtensions;
    switch (type) {
    case XCB_PROPERTY_NOTIFY:
        isChange = isOfTray(x11::eventAs<xcb_property_notify_event_t>(event).window);
        break;
    case XCB_DESTROY_NOTIFY:
        isChange = isOfTray(x11::eventAs<xcb_destroy_notify_event_t>(event).window);
        break;
    case XCB_CONFIGURE_NOTIFY:
        isChange = x11::eventAs<xcb_configure_notify_event_t>(event).window == connection_.root();
        break;
    case XCB_CLIENT_MESSAGE:
        // It may announce another tray.
        isChange = x11::eventAs<xcb_client_message_event_t>(event).window == connection_.root();
        break;
    default:
        break;
    }
    changes_ += isChange ? 1 : 0;
}

void TrayHost::handle(const xcb_generic_event_t& event) {
    switch (x11::typeOf(event)) {
    case XCB_CLIENT_MESSAGE:
        handleMessage(x11::eventAs<xcb_client_message_event_t>(event));
        break;
    case XCB_DESTROY_NOTIFY:
        if (tray_ && x11::eventAs<xcb_destroy_notify_event_t>(event).window == tray_->owner) {
            lose();
        }
        break;
    case XCB_PROPERTY_NOTIFY: {
        const auto& notify = x11::eventAs<xcb_property_notify_event_t>(event);
        // Which icons are docked is asked when somebody wants to know.
        if (tray_ && notify.window == tray_->owner && notify.atom != atoms_[BarItems] &&
            notify.atom != atoms_[BarDetails] && notify.atom != atoms_[BarSerial]) {
            update(tray_->owner, Change::Changed);
        }
        break;
    }
    default:
        break;
    }
}

void TrayHost::handleMessage(const xcb_client_message_event_t& message) {
    if (message.window == connection_.root() && message.type == atoms_[Manager] &&
        message.format == 32 && message.data.data32[1] == atoms_[Selection]) {
        look();
    }
}

void TrayHost::look() {
    const auto reply = connection_.take<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection_.get(), atoms_[Selection]));
    if (!reply) {
        return;
    }
    const xcb_window_t owner = reply->owner;
    if (tray_ && tray_->owner != owner) {
        lose();
    }
    if (owner == XCB_WINDOW_NONE || tray_) {
        return;
    }
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    const auto cookie =
        xcb_change_window_attributes_checked(connection_.get(), owner, XCB_CW_EVENT_MASK, &mask);
    // An owner that is gone already is announced again by its successor.
    if (connection_.hasAccepted(cookie)) {
        update(owner, Change::Arrived);
    }
}

void TrayHost::update(xcb_window_t owner, Change change) {
    const std::uint64_t unanswered = connection_.unanswered();
    const Tray tray = describe(owner);
    if (connection_.unanswered() == unanswered) {
        tray_ = tray;
        observers_.call(change);
    }
}

void TrayHost::recover() {
    look();
    if (tray_) {
        update(tray_->owner, Change::Changed);
    }
}

void TrayHost::lose() {
    logger_.info("The menu bar has gone; waiting for another one");
    tray_.reset();
    observers_.call(Change::Left);
}

Tray TrayHost::describe(xcb_window_t owner) const {
    const auto visual =
        x11::requestProperty(connection_, owner, atoms_[VisualProperty], XCB_ATOM_VISUALID);
    const auto colors = x11::requestProperty(connection_, owner, atoms_[Colors], XCB_ATOM_CARDINAL);
    const auto bar = x11::requestProperty(connection_, owner, atoms_[BarWindow], XCB_ATOM_WINDOW);
    const auto scale =
        x11::requestProperty(connection_, owner, atoms_[BarScale], XCB_ATOM_CARDINAL);
    const auto areas =
        x11::requestProperty(connection_, owner, atoms_[BarAreas], XCB_ATOM_CARDINAL);
    Tray tray;
    tray.owner = owner;
    if (const auto words = wordsOf(connection_, visual); words.size() == 1) {
        tray.visual = connection_.visual(words.front());
    }
    if (tray.visual.type == nullptr) {
        tray.visual = connection_.visual(connection_.screen().root_visual);
    }
    tray.foreground = foregroundIn(wordsOf(connection_, colors));
    if (const auto words = wordsOf(connection_, bar); words.size() == 1) {
        tray.barWindow = words.front();
    }
    tray.scale = scaleIn(wordsOf(connection_, scale));
    constexpr std::size_t rectWords = 4;
    if (const auto words = wordsOf(connection_, areas); words.size() == 2 * rectWords) {
        const auto left = rootRectIn(std::span(words).first(rectWords));
        const auto right = rootRectIn(std::span(words).last(rectWords));
        if (left && right) {
            tray.auxiliaryAreas = {*left, *right};
        }
    }
    if (tray.barWindow != XCB_WINDOW_NONE) {
        describeBar(tray);
    }
    return tray;
}

void TrayHost::describeBar(Tray& tray) const {
    const auto geometryCookie = xcb_get_geometry(connection_.get(), tray.barWindow);
    const auto strut =
        x11::requestProperty(connection_, tray.barWindow, atoms_[StrutPartial], XCB_ATOM_CARDINAL);
    if (const auto geometry = connection_.take<xcb_get_geometry_reply_t>(geometryCookie)) {
        tray.barHeight = geometry->height;
    }
    if (const auto words = wordsOf(connection_, strut); words.size() == Strut{}.size()) {
        std::ranges::copy(words, tray.strut.emplace().begin());
    }
}

} // namespace pelistra::linux
