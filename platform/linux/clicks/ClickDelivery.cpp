#include "platform/linux/clicks/ClickDelivery.h"

#include "platform/linux/clicks/WindowsAt.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/Clients.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace pelistra::linux {

namespace {

// The secondary button, which opens an icon's menu. There is no other way to try: what the primary
// one would do is anybody's guess.
constexpr xcb_button_t menuButton = XCB_BUTTON_INDEX_3;

} // namespace

ClickDelivery::ClickDelivery(const x11::Connection& connection, MainQueue& mainQueue, LogSink& log)
    : connection_(&connection), logger_(log, "private-activation"), replies_(connection),
      device_(connection, replies_), clock_(connection, replies_),
      menu_(connection, replies_, device_, mainQueue) {
    connection.learn({&xcb_res_id});
}

ClickDelivery::~ClickDelivery() {
    if (!device_.exists() || !replies_.begin(patience)) {
        return;
    }
    device_.release(menuButton);
    if (!menu_.close()) {
        menu_.end();
    }
    device_.park();
}

bool ClickDelivery::belongsTo(WindowId window, ProcessId process) {
    const auto known = x11::processOf(*connection_, replies_, window);
    // The server does not know the process of a client on another machine; then the claim counts by
    // which the caller found it.
    return !known || *known == process || isLent(window);
}

// A window of the tray itself stands for a program that has none: the tray passes clicks on.
bool ClickDelivery::isLent(WindowId window) {
    const auto name = x11::traySelectionName(connection_->screenNumber());
    const auto selection = replies_.take<xcb_intern_atom_reply_t>(xcb_intern_atom(
        connection_->get(), 1, static_cast<std::uint16_t>(name.size()), name.c_str()));
    const auto owner = selection ? replies_.take<xcb_get_selection_owner_reply_t>(
                                       xcb_get_selection_owner(connection_->get(), selection->atom))
                                 : nullptr;
    return owner && owner->owner != XCB_NONE &&
           x11::clientOf(*connection_, owner->owner) == x11::clientOf(*connection_, window);
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
        menu_.expect(window);
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
    // Every event travels as the same 32 bytes.
    const auto* const bytes = reinterpret_cast<const char*>(&event);
    connection_->ignoreErrorOf(xcb_send_event_checked(
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
    connection_->ignoreErrorOf(xcb_send_event_checked(connection_->get(), 0, target.window,
                                                      XCB_EVENT_MASK_ENTER_WINDOW,
                                                      // Every event travels as the same 32 bytes.
                                                      reinterpret_cast<const char*>(&event)));
}

bool ClickDelivery::isUncovered(WindowId window, RootPlace place) {
    const bool isOnScreen = place.x >= 0 && place.y >= 0 &&
                            place.x < connection_->screen().width_in_pixels &&
                            place.y < connection_->screen().height_in_pixels;
    const auto windows =
        isOnScreen ? windowsAt(*connection_, replies_, place) : std::vector<WindowId>{};
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
    if (!menu_.close()) {
        return false;
    }
    device_.moveTo(place);
    device_.press(menuButton);
    return true;
}

} // namespace pelistra::linux
