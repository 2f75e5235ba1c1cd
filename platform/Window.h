#pragma once

#include "base/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>

namespace pelistra::ui {
class Content;
}

namespace pelistra {

// Bits of a window's style by the platform's raw values (NSWindowStyleMask).
namespace window_style {
inline constexpr std::uint32_t titled = 1;
inline constexpr std::uint32_t closable = 2;
inline constexpr std::uint32_t miniaturizable = 4;
inline constexpr std::uint32_t resizable = 8;
inline constexpr std::uint32_t fullSizeContentView = 0x8000;
} // namespace window_style

// Raw values of NSWindowTitleVisibility.
enum class TitleVisibility : std::int8_t { Visible = 0, Hidden = 1 };

// An ordinary window, made hidden. It is torn down when this object dies.
class Window {
public:
    Window() = default;
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    virtual ~Window() = default;

    virtual void setTitle(std::string_view title) = 0;
    // Whether the title is drawn; it is told to the window system all the same.
    virtual void setTitleVisibility(TitleVisibility visibility) = 0;
    // Whether the content shows through the title bar.
    virtual void setTitlebarAppearsTransparent(bool transparent) = 0;
    // Whether dragging any place that takes no press itself moves the window.
    virtual void setMovableByWindowBackground(bool movable) = 0;
    // Whether closing also destroys the platform's window. The platform's default is that it does
    // for windows without a controller; a window owned by this object survives its close button.
    virtual void setReleasedWhenClosed(bool released) = 0;
    // In points, without title bar and frame.
    virtual void setContentMinSize(Size size) = 0;
    // What the window shows; shared with the window until it dies.
    virtual void setContent(std::shared_ptr<ui::Content> content) = 0;
    // Puts the window into the middle of its screen, a little above.
    virtual void center() = 0;

    // Puts the window on screen and makes it key; brings it forward when it is there already.
    virtual void showWindow() = 0;
    // Takes it off the screen; showWindow() brings it back.
    virtual void close() = 0;
};

// Makes windows.
class Windows {
public:
    Windows() = default;
    Windows(const Windows&) = delete;
    Windows& operator=(const Windows&) = delete;
    virtual ~Windows() = default;

    // A window with a content of that size in points, at the origin, buffered, not deferred; never
    // null. `styleMask` is a set of window_style bits.
    [[nodiscard]] virtual std::unique_ptr<Window> window(Size contentSize,
                                                         std::uint32_t styleMask) = 0;
};

} // namespace pelistra
