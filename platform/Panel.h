#pragma once

#include "base/Geometry.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace pelistra::ui {
class Content;
}

namespace pelistra {

namespace window_style {
// Clicking the panel does not activate its application (NSWindowStyleMaskNonactivatingPanel).
// Nothing else set: no title bar, no border.
inline constexpr std::uint32_t nonactivatingPanel = 128;
} // namespace window_style

namespace window_level {
// Above ordinary and full-screen windows, with the menu bar's items (NSStatusWindowLevel).
inline constexpr std::int64_t statusBar = 25;
} // namespace window_level

// Bits by the platform's raw values (NSWindowCollectionBehavior).
namespace collection_behavior {
// On every desktop at once.
inline constexpr std::uint64_t canJoinAllSpaces = 1;
// Comes and goes with its own desktop in overviews; no pager or taskbar shows it.
inline constexpr std::uint64_t transient = 8;
// Cycling through windows leaves it out.
inline constexpr std::uint64_t ignoresCycle = 64;
// May lie over another application's full-screen window.
inline constexpr std::uint64_t fullScreenAuxiliary = 256;
} // namespace collection_behavior

// Raw values of NSWindowAnimationBehavior.
enum class AnimationBehavior : std::int8_t { Default = 0, UtilityWindow = 4 };

// What is drawn behind a panel's content.
enum class PanelBackground : std::int8_t { WindowColor, Clear };

// A floating panel, made hidden. It is torn down when this object dies.
class Panel {
public:
    Panel() = default;
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;
    virtual ~Panel() = default;

    // Not drawn when the style has no title bar, but told to the window system.
    virtual void setTitle(std::string_view title) = 0;
    // What a screen reader calls it.
    virtual void setAccessibilityLabel(std::string_view label) = 0;
    // The next three say how the panel lies among other windows. A platform whose panels always lie
    // above everything, on every desktop, has nothing to do for them.
    virtual void setLevel(std::int64_t level) = 0;
    // Whether it lies above the ordinary windows of its application.
    virtual void setFloatingPanel(bool floating) = 0;
    virtual void setCollectionBehavior(std::uint64_t behavior) = 0;
    // Whether it goes away while another application is active.
    virtual void setHidesOnDeactivate(bool hides) = 0;
    // Whether its window covers what lies behind it wholly.
    virtual void setOpaque(bool opaque) = 0;
    virtual void setBackground(PanelBackground background) = 0;
    virtual void setHasShadow(bool hasShadow) = 0;
    // How it comes and goes.
    virtual void setAnimationBehavior(AnimationBehavior behavior) = 0;
    // Whether closing also destroys the platform's window.
    virtual void setReleasedWhenClosed(bool released) = 0;
    // What the panel shows; shared with the panel until it dies.
    virtual void setContent(std::shared_ptr<ui::Content> content) = 0;

    // In points. The caller places the panel again afterwards.
    virtual void setContentSize(Size size) = 0;
    // Where the lower left corner goes.
    virtual void setFrameOrigin(ScreenPoint origin) = 0;

    // Shows the panel in front of all others of its level, and activates nothing.
    virtual void orderFrontRegardless() = 0;
    // Hides it, to be shown again at any time.
    virtual void orderOut() = 0;
    // Whether it has been shown and not hidden since.
    [[nodiscard]] virtual bool isVisible() const = 0;
};

// Makes panels.
class Panels {
public:
    Panels() = default;
    Panels(const Panels&) = delete;
    Panels& operator=(const Panels&) = delete;
    virtual ~Panels() = default;

    // A panel with a content of that size in points, at the origin, buffered, not deferred; never
    // null.
    [[nodiscard]] virtual std::unique_ptr<Panel> panel(Size contentSize,
                                                       std::uint32_t styleMask) = 0;
};

} // namespace pelistra
