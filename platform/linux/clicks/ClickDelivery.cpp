#include "platform/linux/clicks/ClickDelivery.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <xcb/res.h>
#include <xcb/xcbext.h>

namespace pelistra::linux {

namespace {

constexpr xcb_input_device_id_t allMasterDevices = 1;
// The secondary button, which opens an icon's menu. There is no other way to try: what the primary
// one would do is anybody's guess.
constexpr xcb_button_t menuButton = XCB_BUTTON_INDEX_3;
// A window is rarely this deep in the tree; the bound keeps a search from going on for ever while
// windows move.
constexpr int deepestWindow = 32;
// When to look whether a click has opened a menu: programs need a moment, and some need a second.
constexpr std::array<Seconds, 6> menuLooks{Seconds{0.05}, Seconds{0.1}, Seconds{0.15},
                                           Seconds{0.3},  Seconds{0.6}, Seconds{0.8}};
// How long a program may take to close its menu after a click.
constexpr Seconds closingTime{0.2};
constexpr int mostRepetitions = 5;
// Long enough after the start that a program whose last click was ours has forgotten the device.
constexpr Seconds cleaningDelay{1};

int wholePart(xcb_input_fp1616_t fixed) {
    constexpr int fractionBits = 16;
    return fixed >> fractionBits;
}

} // namespace

ClickDelivery::ClickDelivery(const x11::Connection& connection, MainQueue& mainQueue, LogSink& log)
    : connection_(&connection), mainQueue_(&mainQueue), logger_(log, "private-activation"),
      replies_(connection), device_(connection, replies_), clock_(connection, replies_),
      hasResource_(connection.extension(xcb_res_id) != nullptr) {
    mainQueue_->asyncAfter(cleaningDelay, lifetime_.guard([this] {
        if (replies_.begin(patience)) {
            device_.removeAbandoned();
        }
    }));
}

ClickDelivery::~ClickDelivery() {
    if (!device_.exists() || !replies_.begin(patience)) {
        return;
    }
    device_.release(menuButton);
    clickOutside(device_.restingPlace());
    endWatching();
    device_.removeWhenQuiet();
}

std::uint32_t ClickDelivery::clientOf(WindowId window) const {
    return window & ~xcb_get_setup(connection_->get())->resource_id_mask;
}

bool ClickDelivery::belongsTo(WindowId window, ProcessId process) {
    if (!hasResource_) {
        return true;
    }
    const xcb_res_client_id_spec_t client{.client = window,
                                          .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply = replies_.take<xcb_res_query_client_ids_reply_t>(
        xcb_res_query_client_ids(connection_->get(), 1, &client));
    if (!reply) {
        return true;
    }
    const auto id = xcb_res_query_client_ids_ids_iterator(reply.get());
    // The server does not know the process of a client on another machine; then the claim counts by
    // which the caller found it.
    return id.rem == 0 || xcb_res_client_id_value_value_length(id.data) == 0 ||
           static_cast<ProcessId>(*xcb_res_client_id_value_value(id.data)) == process ||
           isLent(window);
}

// A window of the tray itself stands for a program that has none: the tray passes clicks on.
bool ClickDelivery::isLent(WindowId window) {
    const auto name = "_NET_SYSTEM_TRAY_S" + std::to_string(connection_->screenNumber());
    const auto selection = replies_.take<xcb_intern_atom_reply_t>(xcb_intern_atom(
        connection_->get(), 1, static_cast<std::uint16_t>(name.size()), name.c_str()));
    const auto owner = selection ? replies_.take<xcb_get_selection_owner_reply_t>(
                                       xcb_get_selection_owner(connection_->get(), selection->atom))
                                 : nullptr;
    return owner && owner->owner != XCB_NONE && clientOf(owner->owner) == clientOf(window);
}

std::optional<ClickDelivery::Target> ClickDelivery::describe(WindowId window, RootPlace place) {
    xcb_connection_t* const server = connection_->get();
    const auto attributesRequest = xcb_get_window_attributes(server, window);
    const auto placeRequest = xcb_translate_coordinates(server, connection_->root(), window,
                                                        static_cast<std::int16_t>(place.x),
                                                        static_cast<std::int16_t>(place.y));
    const auto attributes = replies_.take<xcb_get_window_attributes_reply_t>(attributesRequest);
    const auto inside = replies_.take<xcb_translate_coordinates_reply_t>(placeRequest);
    if (!attributes || !inside || attributes->map_state != XCB_MAP_STATE_VIEWABLE) {
        return std::nullopt;
    }
    return Target{.window = window,
                  .inside = {.x = inside->dst_x, .y = inside->dst_y},
                  .eventMask = attributes->all_event_masks,
                  .child = inside->child};
}

std::optional<ClickDelivery::Target> ClickDelivery::find(WindowId window, ProcessId process,
                                                         RootPlace place) {
    const auto target = describe(window, place);
    return target && belongsTo(window, process) ? target : std::nullopt;
}

// The window that a real press would be delivered to. Tk takes a press in its inner window only.
ClickDelivery::Target ClickDelivery::deepestListener(Target target, RootPlace place) {
    WindowId child = target.child;
    for (int depth = 0; depth < deepestWindow && child != XCB_NONE; ++depth) {
        const auto deeper = describe(child, place);
        if (deeper && deeper->listensToButtons()) {
            target = *deeper;
        }
        child = deeper ? deeper->child : WindowId{XCB_NONE};
    }
    return target;
}

ClickDelivery::Way ClickDelivery::wayOf(WindowId window, ProcessId process, RootPlace place) {
    const auto target = replies_.begin(patience) ? find(window, process, place) : std::nullopt;
    if (!target) {
        return Way::None;
    }
    return target->listensToButtons() ? Way::Sent : Way::SecondPointer;
}

bool ClickDelivery::press(WindowId window, ProcessId process, RootPlace place) {
    pressedBy_ = Way::None;
    const auto target = replies_.begin(patience) ? find(window, process, place) : std::nullopt;
    if (!target) {
        return false;
    }
    if (target->listensToButtons()) {
        pressed_ = deepestListener(*target, place);
        // Without times, Qt takes the next click for the second half of a double one.
        pressedAt_ = clock_.now();
        // GTK 2 ignores a press in a window that the pointer has not entered.
        sendCrossing(pressed_, place);
        sendButton(XCB_BUTTON_PRESS, pressed_, place);
        pressedBy_ = Way::Sent;
    } else if (pressWithDevice(window, place)) {
        pressedBy_ = Way::SecondPointer;
    }
    connection_->flush();
    return pressedBy_ != Way::None && connection_->isAlive();
}

bool ClickDelivery::release(WindowId window, RootPlace place) {
    switch (std::exchange(pressedBy_, Way::None)) {
    case Way::None:
        return false;
    case Way::Sent:
        // A window that has gone away at the press has had its click.
        sendButton(XCB_BUTTON_RELEASE, pressed_, place);
        connection_->flush();
        break;
    case Way::SecondPointer:
        device_.release(menuButton);
        ++click_;
        lookForMenu(window, 0);
        break;
    }
    return connection_->isAlive();
}

void ClickDelivery::sendButton(std::uint8_t type, const Target& target, RootPlace place) {
    const bool isRelease = type == XCB_BUTTON_RELEASE;
    const xcb_button_press_event_t event{
        .response_type = type,
        .detail = menuButton,
        .sequence = 0,
        .time = pressedAt_,
        .root = connection_->root(),
        .event = target.window,
        .child = XCB_NONE,
        // Qt opens its menu at the root coordinates.
        .root_x = static_cast<std::int16_t>(place.x),
        .root_y = static_cast<std::int16_t>(place.y),
        .event_x = static_cast<std::int16_t>(target.inside.x),
        .event_y = static_cast<std::int16_t>(target.inside.y),
        .state = static_cast<std::uint16_t>(isRelease ? XCB_BUTTON_MASK_3 : 0),
        .same_screen = 1,
        .pad0 = 0};
    // NOLINTNEXTLINE(*-reinterpret-cast): every event travels as the same 32 bytes.
    const auto* const bytes = reinterpret_cast<const char*>(&event);
    ignoreErrorOf(xcb_send_event_checked(
        connection_->get(), 0, target.window,
        isRelease ? XCB_EVENT_MASK_BUTTON_RELEASE : XCB_EVENT_MASK_BUTTON_PRESS, bytes));
}

void ClickDelivery::sendCrossing(const Target& target, RootPlace place) {
    if ((target.eventMask & XCB_EVENT_MASK_ENTER_WINDOW) == 0) {
        return;
    }
    constexpr std::uint8_t sameScreen = 2;
    const xcb_enter_notify_event_t event{.response_type = XCB_ENTER_NOTIFY,
                                         .detail = XCB_NOTIFY_DETAIL_ANCESTOR,
                                         .sequence = 0,
                                         .time = pressedAt_,
                                         .root = connection_->root(),
                                         .event = target.window,
                                         .child = XCB_NONE,
                                         .root_x = static_cast<std::int16_t>(place.x),
                                         .root_y = static_cast<std::int16_t>(place.y),
                                         .event_x = static_cast<std::int16_t>(target.inside.x),
                                         .event_y = static_cast<std::int16_t>(target.inside.y),
                                         .state = 0,
                                         .mode = XCB_NOTIFY_MODE_NORMAL,
                                         .same_screen_focus = sameScreen};
    ignoreErrorOf(xcb_send_event_checked(
        connection_->get(), 0, target.window, XCB_EVENT_MASK_ENTER_WINDOW,
        // NOLINTNEXTLINE(*-reinterpret-cast): every event travels as the same 32 bytes.
        reinterpret_cast<const char*>(&event)));
}

std::vector<WindowId> ClickDelivery::windowsAt(RootPlace place) {
    std::vector<WindowId> chain;
    WindowId window = connection_->root();
    for (int depth = 0; depth < deepestWindow && window != XCB_NONE; ++depth) {
        const auto reply =
            replies_.take<xcb_translate_coordinates_reply_t>(xcb_translate_coordinates(
                connection_->get(), connection_->root(), window, static_cast<std::int16_t>(place.x),
                static_cast<std::int16_t>(place.y)));
        window = reply ? reply->child : WindowId{XCB_NONE};
        if (window != XCB_NONE) {
            chain.push_back(window);
        }
    }
    return chain;
}

bool ClickDelivery::isUncovered(WindowId window, RootPlace place) {
    const bool isOnScreen = place.x >= 0 && place.y >= 0 &&
                            place.x < connection_->screen().width_in_pixels &&
                            place.y < connection_->screen().height_in_pixels;
    const auto windows = isOnScreen ? windowsAt(place) : std::vector<WindowId>{};
    return std::ranges::find(windows, window) != windows.end();
}

bool ClickDelivery::pressWithDevice(WindowId window, RootPlace place) {
    // The press goes to whatever is topmost at that place, so it must be the window.
    if (!isUncovered(window, place)) {
        return false;
    }
    if (!device_.prepare()) {
        logger_.error("No second pointer can be made; this icon cannot be clicked");
        return false;
    }
    if (device_.isGrabbed()) {
        // The menu of an earlier click would swallow this one.
        clickOutside(device_.restingPlace());
        if (device_.isGrabbed()) {
            return false;
        }
    }
    endWatching();
    device_.moveTo(place);
    device_.press(menuButton);
    return true;
}

void ClickDelivery::lookForMenu(WindowId icon, std::size_t attempt) {
    if (attempt == menuLooks.size()) {
        // Nothing was opened that needs the second pointer: off the icon, so that no tip shows.
        device_.park();
        return;
    }
    mainQueue_->asyncAfter(menuLooks.at(attempt),
                           lifetime_.guard([this, icon, attempt, click = click_] {
                               if (click != click_ || !replies_.begin(patience)) {
                                   return;
                               }
                               if (device_.isGrabbed()) {
                                   beginWatching(icon);
                               } else {
                                   lookForMenu(icon, attempt + 1);
                               }
                           }));
}

void ClickDelivery::beginWatching(WindowId icon) {
    Menu& menu = menu_.emplace(Menu{});
    menu.icon = icon;
    selectRawPresses(true);
    menu.keyboardIsGrabbed = grabUserKeyboard();
    connection_->flush();
}

void ClickDelivery::endWatching() {
    if (!menu_) {
        return;
    }
    if (menu_->keyboardIsGrabbed) {
        ignoreErrorOf(xcb_input_xi_ungrab_device_checked(connection_->get(), XCB_CURRENT_TIME,
                                                         device_.userKeyboard()));
    }
    for (const std::uint8_t key : menu_->heldKeys) {
        device_.releaseKey(key);
    }
    selectRawPresses(false);
    menu_.reset();
    device_.park();
}

void ClickDelivery::selectRawPresses(bool on) const {
    struct {
        xcb_input_event_mask_t header;
        std::uint32_t mask;
    } const events{.header = {.deviceid = allMasterDevices, .mask_len = 1},
                   .mask = on ? std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS}
                              : std::uint32_t{0}};
    ignoreErrorOf(xcb_input_xi_select_events_checked(connection_->get(), connection_->root(), 1,
                                                     &events.header));
}

// The keyboard is grabbed synchronously: it waits at each key for what we decide, so that a key
// that comes after the menu has closed goes where it would have gone without us.
bool ClickDelivery::grabUserKeyboard() {
    const std::uint32_t keys =
        XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    const auto reply = replies_.take<xcb_input_xi_grab_device_reply_t>(xcb_input_xi_grab_device(
        connection_->get(), connection_->root(), XCB_CURRENT_TIME, XCB_NONE, device_.userKeyboard(),
        XCB_INPUT_GRAB_MODE_22_SYNC, XCB_INPUT_GRAB_MODE_22_ASYNC, 0, 1, &keys));
    const bool isGrabbed = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    if (isGrabbed) {
        allowKey(XCB_INPUT_EVENT_MODE_SYNC_DEVICE);
    }
    return isGrabbed;
}

void ClickDelivery::allowKey(std::uint8_t mode) const {
    ignoreErrorOf(xcb_input_xi_allow_events_checked(connection_->get(), XCB_CURRENT_TIME,
                                                    device_.userKeyboard(), mode, 0, XCB_NONE));
    connection_->flush();
}

void ClickDelivery::handle(const xcb_generic_event_t& event) {
    if (!menu_ || x11::typeOf(event) != XCB_GE_GENERIC) {
        return;
    }
    const auto* const extension = connection_->extension(xcb_input_id);
    const auto& generic = x11::eventAs<xcb_ge_generic_event_t>(event);
    if (extension == nullptr || generic.extension != extension->major_opcode) {
        return;
    }
    switch (generic.event_type) {
    case XCB_INPUT_RAW_BUTTON_PRESS:
        handlePress(x11::eventAs<xcb_input_raw_button_press_event_t>(event).deviceid);
        break;
    case XCB_INPUT_KEY_PRESS:
        handleKey(x11::eventAs<xcb_input_key_press_event_t>(event), true);
        break;
    case XCB_INPUT_KEY_RELEASE:
        handleKey(x11::eventAs<xcb_input_key_press_event_t>(event), false);
        break;
    default:
        break;
    }
}

void ClickDelivery::handleKey(const xcb_input_key_press_event_t& event, bool pressed) {
    if (event.deviceid != device_.userKeyboard()) {
        return;
    }
    if (!replies_.begin(patience) || !device_.isGrabbed()) {
        // The menu has gone: the key goes where it was meant to go, and so do all that follow.
        allowKey(XCB_INPUT_EVENT_MODE_REPLAY_DEVICE);
        endWatching();
        return;
    }
    const auto keyCode = static_cast<std::uint8_t>(event.detail);
    if (pressed) {
        device_.pressKey(keyCode);
        menu_->heldKeys.insert(keyCode);
    } else {
        menu_->heldKeys.erase(keyCode);
        device_.releaseKey(keyCode);
        checkMenuSoon();
    }
    allowKey(XCB_INPUT_EVENT_MODE_SYNC_DEVICE);
}

void ClickDelivery::handlePress(xcb_input_device_id_t device) {
    if (!menu_ || device_.isOwn(device) || !replies_.begin(patience)) {
        return;
    }
    const auto place = placeOf(device);
    if (!place || !device_.isGrabbed()) {
        endWatching();
        return;
    }
    const auto windows = windowsAt(*place);
    const bool isOnIcon = std::ranges::find(windows, menu_->icon) != windows.end();
    const bool isInMenu = !isOnIcon && std::ranges::any_of(windows, [&](WindowId window) {
        return clientOf(window) == clientOf(menu_->icon);
    });
    if (!isInMenu) {
        // The icon itself would take the repetition for a click of its own.
        menu_->clickedOutside = isOnIcon ? device_.restingPlace() : *place;
        menu_->repetitions = 0;
        clickOutside(*menu_->clickedOutside);
    }
    checkMenuSoon();
}

std::optional<RootPlace> ClickDelivery::placeOf(xcb_input_device_id_t device) {
    const auto reply = replies_.take<xcb_input_xi_query_pointer_reply_t>(
        xcb_input_xi_query_pointer(connection_->get(), connection_->root(), device));
    return reply ? std::optional(
                       RootPlace{.x = wholePart(reply->root_x), .y = wholePart(reply->root_y)})
                 : std::nullopt;
}

void ClickDelivery::clickOutside(RootPlace place) {
    // A menu that closes between the look and the click would leave the click to what lies below.
    xcb_grab_server(connection_->get());
    if (device_.isGrabbed()) {
        device_.moveTo(place);
        device_.press(XCB_BUTTON_INDEX_1);
        device_.release(XCB_BUTTON_INDEX_1);
    }
    xcb_ungrab_server(connection_->get());
    connection_->flush();
}

void ClickDelivery::checkMenuSoon() {
    mainQueue_->asyncAfter(closingTime, lifetime_.guard([this] { checkMenu(); }));
}

void ClickDelivery::checkMenu() {
    if (!menu_) {
        return;
    }
    if (!replies_.begin(patience) || !device_.isGrabbed()) {
        endWatching();
        connection_->flush();
        return;
    }
    // A menu that has just opened ignores clicks for a moment.
    if (menu_->clickedOutside && menu_->repetitions < mostRepetitions) {
        ++menu_->repetitions;
        clickOutside(*menu_->clickedOutside);
        checkMenuSoon();
    }
}

void ClickDelivery::ignoreErrorOf(xcb_void_cookie_t request) const {
    xcb_discard_reply(connection_->get(), request.sequence);
}

} // namespace pelistra::linux
