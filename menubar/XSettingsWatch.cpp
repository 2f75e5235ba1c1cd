#include "menubar/XSettingsWatch.h"

#include "platform/x11/Properties.h"
#include "platform/x11/XSettings.h"

namespace pelistra::menubar {

bool XSettingsWatch::isManagerMessage(const xcb_client_message_event_t& message) const {
    return message.type == server_->atom(Atom::Manager) &&
           message.data.data32[1] == server_->atom(Atom::XSettingsSelection);
}

DesktopThemes XSettingsWatch::readThemes() {
    xcb_connection_t* x = server_->xcb();
    const auto owner = server_->connection().take<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(x, server_->atom(Atom::XSettingsSelection)));
    manager_ = owner ? owner->owner : xcb_window_t{XCB_NONE};
    if (manager_ == XCB_NONE) {
        return {};
    }
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(x, manager_, XCB_CW_EVENT_MASK, &events);
    const auto value = readProperty(
        server_->connection(),
        requestProperty(server_->connection(), manager_, server_->atom(Atom::XSettingsSettings)));
    if (!value) {
        return {};
    }
    const auto settings = x11::parseXSettings(value->bytes);
    const auto named = [&](const char* name) {
        const auto* const setting = x11::settingNamed<std::string>(settings, name);
        return setting != nullptr ? *setting : std::string();
    };
    return {.desktop = named("Net/ThemeName"), .icons = named("Net/IconThemeName")};
}

} // namespace pelistra::menubar
