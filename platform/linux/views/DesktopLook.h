#pragma once

#include "base/Published.h"
#include "base/Subscription.h"
#include "platform/linux/views/Look.h"
#include "platform/linux/windows/WindowsModule.h"
#include "platform/x11/Connection.h"

namespace pelistra::linux {

// Follows the look that the desktop publishes through its XSETTINGS manager; the light standard
// look without one. Nothing happens while the desktop changes nothing.
class DesktopLook {
public:
    // Connection and look outlive this object.
    DesktopLook(const WindowServices& services, Published<Look>& look);
    DesktopLook(const DesktopLook&) = delete;
    DesktopLook& operator=(const DesktopLook&) = delete;
    ~DesktopLook() = default;

private:
    void handle(const xcb_generic_event_t& event);
    // Finds the manager anew and reads what it publishes; all stays as it is without an answer.
    void findManager();
    void read();

    const x11::Connection& connection_;
    Published<Look>& look_;
    xcb_atom_t selection_ = XCB_ATOM_NONE;
    xcb_atom_t property_ = XCB_ATOM_NONE;
    xcb_atom_t managerMessage_ = XCB_ATOM_NONE;
    xcb_window_t manager_ = XCB_WINDOW_NONE;
    SubscriptionPtr events_;
    SubscriptionPtr recoveries_;
};

} // namespace pelistra::linux
