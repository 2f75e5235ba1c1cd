#pragma once

#include "menubar/Monitors.h"
#include "menubar/Server.h"
#include "menubar/XResource.h"

namespace pelistra::menubar {

// The bar's window: a dock at the top of a monitor, on all desktops, below full-screen windows,
// with its height reserved.
class BarWindow {
public:
    // Makes the window, unmapped, with no place yet.
    explicit BarWindow(const Server& server);

    [[nodiscard]] xcb_window_t id() const { return window_.id(); }
    [[nodiscard]] const PixelRect& frame() const { return frame_; }

    // Moves the bar there and reserves its space, if `reserve`; nothing happens when it is there.
    void place(const PixelRect& frame, bool reserve);
    // Maps the window; it is made unmapped.
    void show() const;

private:
    void describe() const;
    void setStruts() const;

    const Server* server_;
    WindowHandle window_;
    PixelRect frame_;
    bool reserve_ = false;
};

} // namespace pelistra::menubar
