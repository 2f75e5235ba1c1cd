#include "platform/linux/clicks/MenuWatch.h"

#include "platform/linux/clicks/WindowsAt.h"
#include "platform/x11/Clients.h"

#include <algorithm>
#include <array>
#include <vector>

namespace pelistra::linux {

namespace {

constexpr xcb_input_device_id_t allMasterDevices = 1;
// When to look whether a click has opened a menu: programs need a moment, and some need a second.
constexpr std::array<Seconds, 6> menuLooks{Seconds{0.05}, Seconds{0.1}, Seconds{0.15},
                                           Seconds{0.3},  Seconds{0.6}, Seconds{0.8}};
// How long a program may take to close its menu after a click.
constexpr Seconds closingTime{0.2};
constexpr int mostRepetitions = 5;

int wholePart(xcb_input_fp1616_t fixed) {
    constexpr int fractionBits = 16;
    return fixed >> fractionBits;
}

} // namespace

MenuWatch::MenuWatch(const x11::Connection& connection, x11::Replies& replies,
                     PointerDevice& device, MainQueue& mainQueue)
    : connection_(&connection), replies_(&replies), device_(&device), mainQueue_(&mainQueue) {}

void MenuWatch::expect(WindowId icon) {
    ++click_;
    look(icon, 0);
}

bool MenuWatch::close() {
    clickOutside(device_->restingPlace());
    if (device_->isGrabbed()) {
        return false;
    }
    end();
    return true;
}

void MenuWatch::look(WindowId icon, std::size_t attempt) {
    if (attempt == menuLooks.size()) {
        // Nothing was opened that needs the second pointer: off the icon, so that no tip shows.
        device_->park();
        return;
    }
    mainQueue_->asyncAfter(menuLooks.at(attempt),
                           lifetime_.guard([this, icon, attempt, click = click_] {
                               if (click != click_ || !replies_->begin(patience)) {
                                   return;
                               }
                               if (device_->isGrabbed()) {
                                   begin(icon);
                               } else {
                                   look(icon, attempt + 1);
                               }
                           }));
}

void MenuWatch::begin(WindowId icon) {
    Menu& menu = menu_.emplace(Menu{});
    menu.icon = icon;
    selectRawPresses(true);
    menu.keyboardIsGrabbed = grabUserKeyboard();
    connection_->flush();
}

void MenuWatch::end() {
    if (!menu_) {
        return;
    }
    if (menu_->keyboardIsGrabbed) {
        connection_->ignoreErrorOf(xcb_input_xi_ungrab_device_checked(
            connection_->get(), XCB_CURRENT_TIME, device_->userKeyboard()));
    }
    for (const std::uint8_t key : menu_->heldKeys) {
        device_->releaseKey(key);
    }
    selectRawPresses(false);
    menu_.reset();
    device_->park();
}

void MenuWatch::selectRawPresses(bool on) const {
    struct {
        xcb_input_event_mask_t header;
        std::uint32_t mask;
    } const events{.header = {.deviceid = allMasterDevices, .mask_len = 1},
                   .mask = on ? std::uint32_t{XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS}
                              : std::uint32_t{0}};
    connection_->ignoreErrorOf(xcb_input_xi_select_events_checked(
        connection_->get(), connection_->root(), 1, &events.header));
}

// The keyboard is grabbed synchronously: it waits at each key for what we decide, so that a key
// that comes after the menu has closed goes where it would have gone without us.
bool MenuWatch::grabUserKeyboard() {
    const std::uint32_t keys =
        XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    const auto reply = replies_->take<xcb_input_xi_grab_device_reply_t>(
        xcb_input_xi_grab_device(connection_->get(), connection_->root(), XCB_CURRENT_TIME,
                                 XCB_NONE, device_->userKeyboard(), XCB_INPUT_GRAB_MODE_22_SYNC,
                                 XCB_INPUT_GRAB_MODE_22_ASYNC, 0, 1, &keys));
    const bool isGrabbed = reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
    if (isGrabbed) {
        allowKey(XCB_INPUT_EVENT_MODE_SYNC_DEVICE);
    }
    return isGrabbed;
}

void MenuWatch::allowKey(std::uint8_t mode) const {
    connection_->ignoreErrorOf(xcb_input_xi_allow_events_checked(
        connection_->get(), XCB_CURRENT_TIME, device_->userKeyboard(), mode, 0, XCB_NONE));
    connection_->flush();
}

void MenuWatch::handle(const xcb_generic_event_t& event) {
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

void MenuWatch::handleKey(const xcb_input_key_press_event_t& event, bool pressed) {
    if (!menu_ || event.deviceid != device_->userKeyboard()) {
        return;
    }
    if (!replies_->begin(patience) || !device_->isGrabbed()) {
        // The menu has gone: the key goes where it was meant to go, and so do all that follow.
        allowKey(XCB_INPUT_EVENT_MODE_REPLAY_DEVICE);
        end();
        return;
    }
    const auto keyCode = static_cast<std::uint8_t>(event.detail);
    if (pressed) {
        device_->pressKey(keyCode);
        menu_->heldKeys.insert(keyCode);
    } else {
        menu_->heldKeys.erase(keyCode);
        device_->releaseKey(keyCode);
        checkSoon();
    }
    allowKey(XCB_INPUT_EVENT_MODE_SYNC_DEVICE);
}

void MenuWatch::handlePress(xcb_input_device_id_t device) {
    if (!menu_ || device_->isOwn(device) || !replies_->begin(patience)) {
        return;
    }
    const auto place = placeOf(device);
    if (!place || !device_->isGrabbed()) {
        end();
        return;
    }
    const auto windows = windowsAt(*connection_, *replies_, *place);
    const bool isOnIcon = std::ranges::find(windows, menu_->icon) != windows.end();
    const bool isInMenu = !isOnIcon && std::ranges::any_of(windows, [&](WindowId window) {
        return x11::clientOf(*connection_, window) == x11::clientOf(*connection_, menu_->icon);
    });
    if (!isInMenu) {
        // The icon itself would take the repetition for a click of its own.
        menu_->clickedOutside = isOnIcon ? device_->restingPlace() : *place;
        menu_->repetitions = 0;
        clickOutside(*menu_->clickedOutside);
    }
    checkSoon();
}

std::optional<RootPlace> MenuWatch::placeOf(xcb_input_device_id_t device) {
    const auto reply = replies_->take<xcb_input_xi_query_pointer_reply_t>(
        xcb_input_xi_query_pointer(connection_->get(), connection_->root(), device));
    return reply ? std::optional(
                       RootPlace{.x = wholePart(reply->root_x), .y = wholePart(reply->root_y)})
                 : std::nullopt;
}

void MenuWatch::clickOutside(RootPlace place) {
    // A menu that closes between the look and the click would leave the click to what lies below.
    xcb_grab_server(connection_->get());
    if (device_->isGrabbed()) {
        device_->moveTo(place);
        device_->press(XCB_BUTTON_INDEX_1);
        device_->release(XCB_BUTTON_INDEX_1);
    }
    xcb_ungrab_server(connection_->get());
    connection_->flush();
}

void MenuWatch::checkSoon() {
    mainQueue_->asyncAfter(closingTime, lifetime_.guard([this] { check(); }));
}

void MenuWatch::check() {
    if (!menu_) {
        return;
    }
    if (!replies_->begin(patience) || !device_->isGrabbed()) {
        end();
        connection_->flush();
        return;
    }
    // A menu that has just opened ignores clicks for a moment.
    if (menu_->clickedOutside && menu_->repetitions < mostRepetitions) {
        ++menu_->repetitions;
        clickOutside(*menu_->clickedOutside);
        checkSoon();
    }
}

} // namespace pelistra::linux
