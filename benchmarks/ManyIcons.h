#pragma once

#include "tests/desktop/harness/XClient.h"

#include <cstddef>
#include <string>
#include <vector>

namespace pelistra::testing {

// A program with many quiet tray icons: each has a background colour and never repaints itself.
class ManyIcons {
public:
    // Asks the tray for a dock for `count` icons; the bar must be there.
    ManyIcons(const std::string& display, std::size_t count);

    [[nodiscard]] const std::vector<xcb_window_t>& windows() const { return windows_; }
    // Asks for another width of one icon.
    void askForWidth(xcb_window_t window, std::uint32_t width);

private:
    void make(std::size_t index);
    void requestDock(xcb_window_t tray, xcb_window_t window);

    XClient x_;
    std::vector<xcb_window_t> windows_;
};

} // namespace pelistra::testing
