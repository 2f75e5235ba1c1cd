#pragma once

#include "base/Geometry.h"
#include "platform/Application.h"
#include "platform/Image.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace pelistra {

// The clickable part of a status item.
class StatusButton {
public:
    StatusButton() = default;
    StatusButton(const StatusButton&) = delete;
    StatusButton& operator=(const StatusButton&) = delete;
    virtual ~StatusButton() = default;

    // Null takes the picture away.
    virtual void setImage(ImagePtr image) = 0;
    // Plain text, shown when the pointer rests on the button; none when it is empty.
    virtual void setToolTip(std::string_view text) = 0;
    // What a click does; an empty function makes the button inert.
    virtual void setAction(std::function<void()> action) = 0;
    // Which events trigger the action; the left button's release in a new button.
    virtual void sendActionOn(EventMask mask) = 0;

    // The frame of the window that the button lives in; empty while there is no window.
    [[nodiscard]] virtual std::optional<ScreenRect> windowFrame() const = 0;
    // The button's own bounds on the screen; empty while there is no window.
    [[nodiscard]] virtual std::optional<ScreenRect> frameOnScreen() const = 0;
};

// One item in the system's menu bar. It stays there as long as this object lives.
class StatusItem {
public:
    // A length that makes the item as wide as the menu bar is high (NSSquareStatusItemLength).
    static constexpr double squareLength = -2;

    StatusItem() = default;
    StatusItem(const StatusItem&) = delete;
    StatusItem& operator=(const StatusItem&) = delete;
    virtual ~StatusItem() = default;

    // The name under which the user's arrangement of this item is remembered, and under which the
    // window server reports its window.
    virtual void setAutosaveName(std::string_view name) = 0;
    // Takes the item out of the menu bar or puts it back; a new item is visible.
    virtual void setVisible(bool visible) = 0;

    // Width in points, or squareLength.
    virtual void setLength(double length) = 0;
    // As it was set.
    [[nodiscard]] virtual double length() const = 0;

    // Null when the status bar gave the item no button. Others may hold it weakly.
    [[nodiscard]] virtual std::shared_ptr<StatusButton> button() const = 0;
};

// The system's menu bar.
class StatusBar {
public:
    StatusBar() = default;
    StatusBar(const StatusBar&) = delete;
    StatusBar& operator=(const StatusBar&) = delete;
    virtual ~StatusBar() = default;

    // A new item of the given length; never null.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> statusItem(double withLength) = 0;
};

} // namespace pelistra
