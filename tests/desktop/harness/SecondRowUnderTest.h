#pragma once

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"

#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// The second row of a desktop's organiser, seen on the X server and through the accessibility bus.
class SecondRowUnderTest {
public:
    // Both must outlive this object. The organiser must have been started as a speaking program.
    SecondRowUnderTest(Desktop& desktop, AccessibleTree& tree) : desktop_(desktop), tree_(tree) {}

    struct Icon {
        // What a screen reader hears, without the words about the click.
        std::string name;
        // Root coordinates, device pixels; may lie outside the row, where it has to be scrolled to.
        WindowFrame frame;
    };

    // Its window while it shows.
    [[nodiscard]] std::optional<xcb_window_t> window();
    [[nodiscard]] bool isOpen() { return window().has_value(); }
    // Of the window, margins for the shadow included; empty while it is closed.
    [[nodiscard]] std::optional<WindowFrame> frame();
    // Left to right; empty while it is closed.
    [[nodiscard]] std::vector<Icon> icons();
    // Their names in one line, for reports.
    [[nodiscard]] std::string heardNames();
    // The icon whose name begins so.
    [[nodiscard]] std::optional<Icon> icon(const std::string& name);
    // The button that expands the section.
    [[nodiscard]] std::optional<WindowFrame> arrangeButton();

    // Clicks the arrow of the collapsed section once the last click has lost its effect; true when
    // the row shows then, and all its icons can be heard.
    [[nodiscard]] bool open();
    // Waits until a reveal has come to its end, whichever that is, closes the row by a click on
    // that empty place and puts back what is revealed. Whether the section is hidden then.
    [[nodiscard]] bool endAnyReveal(const RootPoint& emptyPlace);
    // Waits out the time in which the arrow ignores clicks, which is also that of a double click.
    static void letTheArrowRest();

private:
    [[nodiscard]] WindowFrame pixels(const WindowFrame& points);

    Desktop& desktop_;
    AccessibleTree& tree_;
};

} // namespace pelistra::testing
