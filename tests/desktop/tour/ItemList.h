#pragma once

#include "tests/desktop/harness/Desktop.h"

#include <string>
#include <vector>

namespace pelistra::testing {

// One item as `pelistra --list-items --json` writes it.
struct ListedIcon {
    xcb_window_t id = XCB_WINDOW_NONE;
    pid_t process = 0;
    // Points.
    WindowFrame frame;
    bool isHidden = false;
    std::string displayName;
};

// Runs the program on the desktop; throws std::runtime_error when it fails or writes no such list.
[[nodiscard]] std::vector<ListedIcon> listItems(Desktop& desktop);

} // namespace pelistra::testing
