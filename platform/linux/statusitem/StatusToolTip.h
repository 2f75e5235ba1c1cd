#pragma once

#include "platform/MainQueue.h"
#include "platform/x11/Connection.h"
#include "ui/Color.h"

#include <memory>

namespace pelistra::linux {

class LoadedWindows;
class TrayStatusButton;

// The one tooltip of the status items: when it comes and goes.
class StatusToolTip {
public:
    // How long the pointer rests on an item before its tooltip comes.
    static constexpr Seconds delay{0.7};

    StatusToolTip(const x11::Connection& connection, MainQueue& mainQueue, LoadedWindows& windows)
        : connection_(connection), mainQueue_(mainQueue), windows_(windows) {}

    // Shows the button's tooltip after the delay, at its window, unless it is hidden before. It is
    // dark where the bar's foreground is light.
    void schedule(const std::shared_ptr<TrayStatusButton>& button, xcb_window_t window,
                  const ui::Rgb& foreground);
    void hide();

private:
    void show();

    const x11::Connection& connection_;
    MainQueue& mainQueue_;
    LoadedWindows& windows_;
    std::weak_ptr<TrayStatusButton> button_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    bool onDark_ = false;
    SubscriptionPtr timer_;
};

} // namespace pelistra::linux
