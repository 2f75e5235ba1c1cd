#pragma once

#include "menubar/Server.h"
#include "menubar/XResource.h"

#include <memory>
#include <string>

namespace pelistra::menubar {

// The ownership of the screen's tray selection, held by an unmapped window of its own. Destroying
// it gives the tray up: release the icons before.
class TraySelection {
public:
    // Takes the selection. Null, with a sentence for the user in `failure`, when another program
    // owns it and `replace` is false, or when it cannot be had.
    [[nodiscard]] static std::unique_ptr<TraySelection> acquire(const Server& server, bool replace,
                                                                std::string& failure);

    // The window that programs send their requests to.
    [[nodiscard]] xcb_window_t owner() const { return window_.id(); }
    // Tells all programs that the tray is there. Publish what they want to know before.
    void announce() const;
    // Whether the event says that another program took the tray.
    [[nodiscard]] bool isLoss(const xcb_selection_clear_event_t& event) const;

private:
    explicit TraySelection(const Server& server);

    bool readServerTime();
    [[nodiscard]] xcb_window_t currentOwner() const;
    [[nodiscard]] std::string describeOwner(xcb_window_t owner) const;
    void waitForEnd(xcb_window_t owner) const;

    const Server* server_;
    WindowHandle window_;
    xcb_timestamp_t time_ = XCB_CURRENT_TIME;
};

} // namespace pelistra::menubar
