#pragma once

#include "menubar/Artwork.h"
#include "menubar/ItemList.h"
#include "menubar/Server.h"

namespace pelistra::menubar {

// The name and title of the window that the user works in, as the window manager tells. Only events
// make it look.
class ActiveWindow {
public:
    // `items` tells which windows are in the bar; it must outlive this.
    ActiveWindow(const Server& server, const ItemList& items) : server_(&server), items_(&items) {}

    // Whether a change of that property of that window is about the active window.
    bool concerns(const xcb_property_notify_event_t& event) const;
    // Reads it again: two round trips. Returns whether the title changed.
    bool refresh();

    [[nodiscard]] const BarTitle& title() const { return title_; }

private:
    [[nodiscard]] xcb_window_t current() const;
    void follow(xcb_window_t window);
    [[nodiscard]] BarTitle read() const;

    const Server* server_;
    const ItemList* items_;
    // A foreign window, or none.
    xcb_window_t window_ = XCB_NONE;
    BarTitle title_;
};

} // namespace pelistra::menubar
