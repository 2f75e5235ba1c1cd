#pragma once

#include "base/Geometry.h"

#include <cstdint>
#include <memory>
#include <string>

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

// How a panel is made. Where a platform has only one kind of panel, above everything and on every
// desktop, it has no use for most of it.
struct PanelConfiguration {
    // In points, at the origin.
    Size contentSize;
    std::uint32_t styleMask = 0;
    // Not drawn when the style has no title bar, but told to the window system.
    std::string title = {};
    // What a screen reader calls it.
    std::string accessibilityLabel = {};
    std::int64_t level = 0;
    // Whether it lies above the ordinary windows of its application.
    bool isFloatingPanel = false;
    // Whether it goes away while another application is active.
    bool hidesOnDeactivate = true;
    std::uint64_t collectionBehavior = 0;
    // Whether its window covers what lies behind it wholly.
    bool isOpaque = true;
    PanelBackground background = PanelBackground::WindowColor;
    bool hasShadow = true;
    // How it comes and goes.
    AnimationBehavior animationBehavior = AnimationBehavior::Default;
    // Whether closing also destroys the platform's window.
    bool isReleasedWhenClosed = true;

    bool operator==(const PanelConfiguration&) const = default;
};

// A floating panel, made hidden. It is torn down when this object dies.
class Panel {
public:
    Panel() = default;
    Panel(const Panel&) = delete;
    Panel& operator=(const Panel&) = delete;
    virtual ~Panel() = default;

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

    // Never null; buffered, not deferred.
    [[nodiscard]] virtual std::unique_ptr<Panel> panel(const PanelConfiguration& configuration) = 0;
};

} // namespace pelistra
