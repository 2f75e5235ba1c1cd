#pragma once

#include "platform/Application.h"
#include "platform/WindowList.h"
#include "platform/linux/screens/Coordinates.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pelistra::linux {

// What an icon is to the server.
enum class IconKind : std::uint8_t {
    // A window of its program.
    Window,
    // A window that our menu bar has lent to a program that shows its icon over the session bus.
    Lent,
};

// One icon that is embedded in the tray at the moment of the look.
struct TrayIcon {
    WindowId window = 0;
    RootRect frame;
    IconKind kind = IconKind::Window;
    // The process behind the window: what the server knows of the client's connection, or, of a
    // lent window, what the bar knows of the program's; only when it knows nothing, the client's
    // own claim, provided that it is made for this machine. 0 when there is neither.
    ProcessId pid = 0;
    // The window's title, presentable; empty when it has none.
    std::string name;
    // The two texts of WM_CLASS, presentable.
    std::string instanceName;
    std::string className;
};

// The tray as it was at one moment.
struct TrayView {
    // The owner of the tray selection; 0 when there is no tray.
    WindowId owner = 0;
    // Our own menu bar, which pushes what does not fit off its left end.
    bool isMenuBar = false;
    Coordinates coordinates{1, {}};
    // In the bar's order from left to right.
    std::vector<TrayIcon> icons;
    // How often the look waited for the server.
    int roundTrips = 0;
};

} // namespace pelistra::linux
