#pragma once

#include "base/Lifetime.h"
#include "platform/GlobalClicks.h"
#include "platform/linux/loop/EventPump.h"
#include "platform/x11/Connection.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <xcb/xinput.h>

namespace pelistra::linux {

// The windows of this application that other connections than the one that listens have made.
struct OwnWindows {
    std::function<bool(xcb_window_t)> hasMade;
    // Those on the screen.
    std::function<std::vector<xcb_window_t>()> shown;
};

// Presses of the left and right mouse button anywhere on the screen, through XInput 2.2. Nothing is
// asked of the server while no monitor is there.
//
// A press counts as this application's own when it goes to a window that one of our connections has
// made (status items in a tray, panels, windows, help texts), to the window manager's frame around
// one, or comes from a pointer that we have made ourselves.
class X11GlobalClicks final : public GlobalClicks {
public:
    X11GlobalClicks(const x11::Connection& connection, EventPump& pump, OwnWindows own);
    X11GlobalClicks(const X11GlobalClicks&) = delete;
    X11GlobalClicks& operator=(const X11GlobalClicks&) = delete;
    ~X11GlobalClicks() override = default;

    // Null without XInput 2.2.
    [[nodiscard]] SubscriptionPtr addMonitor(EventMask matching,
                                             std::function<void()> handler) override;

private:
    struct Monitor;
    class Token;

    [[nodiscard]] bool prepare();
    void select(bool on) const;
    void remove(const Monitor* monitor);
    void handle(const xcb_generic_event_t& event);
    void handlePress(const xcb_input_raw_button_press_event_t& press);
    [[nodiscard]] std::optional<EventType> typeOf(std::uint32_t physicalButton) const;
    [[nodiscard]] bool isOwnDevice(xcb_input_device_id_t device) const;
    [[nodiscard]] bool isOwnPlace(xcb_input_device_id_t device) const;
    [[nodiscard]] bool isOwnWindow(xcb_window_t window) const;
    [[nodiscard]] bool isFrameOfOwnWindow(xcb_window_t topLevel) const;
    [[nodiscard]] xcb_window_t topLevelOf(xcb_window_t window) const;

    const x11::Connection& connection_;
    EventPump& pump_;
    OwnWindows own_;
    // Empty until it was asked for.
    std::optional<bool> isSupported_;
    std::uint8_t opcode_ = 0;
    std::vector<std::shared_ptr<Monitor>> monitors_;
    SubscriptionPtr events_;
    Lifetime lifetime_;
};

} // namespace pelistra::linux
