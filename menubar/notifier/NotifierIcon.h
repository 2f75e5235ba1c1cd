#pragma once

#include "menubar/notifier/NotifierDocking.h"

namespace pelistra::menubar {

// What is known of one icon of the session bus.
struct NotifierDocking::Icon {
    // Its item's.
    std::uint64_t number = 0;
    xcb_window_t window = XCB_NONE;
    // One of its pictures: the icon itself, or what lies over it.
    struct Part {
        std::uint64_t asker = 0;
        // The last that was asked for; empty when the program sends the picture itself.
        std::optional<IconRequest> request;
        bool waiting = false;
        ArgbImage image;
    };
    Part picture;
    Part overlay;
    // The button that went down on it.
    xcb_button_t pressed = 0;

    explicit Icon(std::uint64_t itemNumber) : number(itemNumber) {
        picture.asker = 2 * number;
        overlay.asker = 2 * number + 1;
    }
};

} // namespace pelistra::menubar
