#include "platform/linux/views/DesktopLook.h"

#include "platform/linux/views/PublishedLook.h"
#include "platform/x11/Atoms.h"
#include "platform/x11/Properties.h"

#include <array>
#include <string>

namespace pelistra::linux {

namespace {

// The bit that the server sets on events that a client has sent.
constexpr std::uint8_t sentMask = 0x80;

} // namespace

// Announcements of new managers reach this connection because the tray's are waited for on it too.
DesktopLook::DesktopLook(const WindowServices& services, Published<Look>& look)
    : connection_(services.connection), look_(look) {
    const std::string selection = "_XSETTINGS_S" + std::to_string(connection_.screenNumber());
    const std::array<std::string_view, 3> names = {selection, "_XSETTINGS_SETTINGS", "MANAGER"};
    const auto atoms = x11::internAtoms(connection_, names);
    selection_ = atoms[0];
    property_ = atoms[1];
    managerMessage_ = atoms[2];
    recoveries_ = services.observeRecoveries([this] { findManager(); });
    events_ = services.observeEvents([this](const xcb_generic_event_t& event) { handle(event); });
    findManager();
}

void DesktopLook::handle(const xcb_generic_event_t& event) {
    const auto type = static_cast<std::uint8_t>(event.response_type & ~sentMask);
    if (type == XCB_CLIENT_MESSAGE) {
        const auto& message = reinterpret_cast<const xcb_client_message_event_t&>(event);
        if (message.type == managerMessage_ && message.data.data32[1] == selection_) {
            findManager();
        }
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window == manager_ && change.atom == property_) {
            read();
        }
    } else if (type == XCB_DESTROY_NOTIFY) {
        const auto& end = reinterpret_cast<const xcb_destroy_notify_event_t&>(event);
        // What it has published stays in force until there is another one.
        if (manager_ != XCB_WINDOW_NONE && end.window == manager_) {
            findManager();
        }
    }
}

void DesktopLook::findManager() {
    const auto owner = connection_.take<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection_.get(), selection_));
    if (!owner) {
        return;
    }
    manager_ = owner->owner;
    if (manager_ == XCB_WINDOW_NONE) {
        return;
    }
    const std::uint32_t mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_.get(), manager_, XCB_CW_EVENT_MASK, &mask);
    read();
}

void DesktopLook::read() {
    const auto value =
        x11::readProperty(connection_, x11::requestProperty(connection_, manager_, property_));
    if (!value) {
        return;
    }
    const Look look = lookOf(x11::parseXSettings(value->bytes));
    if (look != look_.get()) {
        look_.set(look);
    }
}

} // namespace pelistra::linux
