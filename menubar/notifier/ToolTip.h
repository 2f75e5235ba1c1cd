#pragma once

#include "menubar/Artwork.h"
#include "menubar/Monitors.h"
#include "menubar/Painter.h"
#include "menubar/Server.h"

#include <chrono>
#include <optional>
#include <string>

namespace pelistra::menubar {

struct ToolTipText {
    std::string title;
    // Lines with line breaks between; may be empty, as may the title.
    std::string text;

    bool operator==(const ToolTipText&) const = default;
};

// The text in its box, at most `mostWidth` device pixels wide.
[[nodiscard]] ArgbImage toolTipImage(const ToolTipText& text, bool dark, const Metrics& metrics,
                                     int mostWidth);

// The one tool tip of the bar: it comes below the window that the pointer rests on.
class ToolTip {
public:
    using Clock = std::chrono::steady_clock;
    // How long the pointer rests there before.
    static constexpr std::chrono::milliseconds delay{700};

    // Both must outlive this.
    ToolTip(const Server& server, const Painter& painter) : server_(&server), painter_(&painter) {}

    // The pointer has come to that window.
    void schedule(xcb_window_t owner);
    // It is not wanted any more.
    void hide();

    // Whose it is, also before it is shown; XCB_NONE while there is none.
    [[nodiscard]] xcb_window_t owner() const { return owner_; }
    [[nodiscard]] bool isShown() const { return static_cast<bool>(window_); }
    // When show() is to be called.
    [[nodiscard]] std::optional<Clock::time_point> due() const { return due_; }

    // Shows it below the item, inside the bar's width, or shows that instead of what it showed;
    // both frames are in root coordinates. A text that says nothing is not shown.
    void show(const ToolTipText& text, const PixelRect& item, const PixelRect& bar, bool dark,
              const Metrics& metrics);

private:
    const Server* server_;
    const Painter* painter_;
    xcb_window_t owner_ = XCB_NONE;
    std::optional<Clock::time_point> due_;
    WindowHandle window_;
    ToolTipText text_;
};

} // namespace pelistra::menubar
