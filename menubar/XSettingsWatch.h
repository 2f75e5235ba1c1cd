#pragma once

#include "menubar/Server.h"

#include <string>

namespace pelistra::menubar {

// What a desktop looks like: names of themes, empty where it does not say.
struct DesktopThemes {
    std::string desktop;
    std::string icons;
};

// Follows the desktop's settings manager: its coming, going and every change of its settings.
class XSettingsWatch {
public:
    explicit XSettingsWatch(const Server& server) : server_(&server) {}

    // Whether an event is about the settings: they are to be read again.
    [[nodiscard]] bool isManagerMessage(const xcb_client_message_event_t& message) const;
    [[nodiscard]] bool isManagerWindow(xcb_window_t window) const {
        return window == manager_ && window != XCB_NONE;
    }

    // Looks the manager up and reads from it: two round trips.
    [[nodiscard]] DesktopThemes readThemes();

private:
    const Server* server_;
    // The manager's window; not ours.
    xcb_window_t manager_ = XCB_NONE;
};

} // namespace pelistra::menubar
