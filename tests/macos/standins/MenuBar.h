#pragma once

#import <AppKit/AppKit.h>

#include <cstdint>
#include <string>
#include <vector>

namespace pelistra::testing::standins {

struct MenuBarWindow {
    std::uint32_t window = 0;
    pid_t ownerPid = 0;
    std::string ownerName;
    std::string name;
    // Global coordinates, y growing downwards.
    NSRect frame;
};

// What is in the stand-in's menu bar, left to right.
[[nodiscard]] const std::vector<MenuBarWindow>& menuBarWindows();

// The status item with that name; nil when there is none.
[[nodiscard]] NSStatusItem* statusItem(NSString* autosaveName);

} // namespace pelistra::testing::standins
