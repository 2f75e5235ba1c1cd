#pragma once

#include "benchmarks/Measuring.h"
#include "benchmarks/ScreenWatch.h"
#include "tests/desktop/harness/Desktop.h"

#include <optional>
#include <string>

namespace pelistra::testing {

// The second row of a desktop's organiser, whose section is collapsed or will be.
class OpenRow {
public:
    // The desktop must outlive this object; bar and organiser must run.
    explicit OpenRow(Desktop& desktop) : desktop_(desktop), watch_(desktop.display().name()) {}

    [[nodiscard]] ScreenWatch& watch() { return watch_; }

    // Hides the section; throws std::runtime_error when that does not come to pass.
    void collapse();
    // Clicks the arrow and waits for the row's window.
    void open();
    // Clicks elsewhere and waits until the window is gone.
    void close();
    // Where the row is; throws std::runtime_error while it is closed.
    [[nodiscard]] WindowFrame frame();
    // What the row looks like once nothing in it changes any more.
    [[nodiscard]] Picture settledPicture();
    // Clicks the arrow and waits until the screen shows that picture there: the time from the
    // release of the button.
    [[nodiscard]] double timeToShow(const WindowFrame& frame, const Picture& picture);

private:
    [[nodiscard]] std::optional<xcb_window_t> window();
    // Presses the button on the arrow, without letting it go.
    void pressArrow();

    Desktop& desktop_;
    ScreenWatch watch_;
    xcb_window_t known_ = XCB_WINDOW_NONE;
};

} // namespace pelistra::testing
