#pragma once

#include "overflow/PrivateMenuBarWindow.h"

#include <optional>
#include <string>

namespace pelistra {

// One hidden menu-bar icon: a plain value whose identity is its window's id. Only the frame and the
// captured picture change once an item is made. Pictures are compared by pointer.
struct OverflowItem {
    WindowId id = 0;
    ProcessId ownerPID = 0;
    std::string ownerName;
    // Often empty, a system identifier such as "Clock", or a generic name such as "Item-0".
    std::string windowName;
    std::optional<std::string> bundleIdentifier;
    // Where the window was when last seen: points, global coordinates.
    Rect lastKnownFrame;
    // Null until a picture has been taken.
    ImagePtr capturedImage;
    ImagePtr applicationIcon;

    // An item of that window, with a picture carried over from an earlier item or null.
    [[nodiscard]] static OverflowItem from(PrivateMenuBarWindow window, ImagePtr capturedImage);

    // A short name for people; never empty.
    [[nodiscard]] std::string displayName() const;
    // The base of the hover text; empty when the owner has no name.
    [[nodiscard]] std::string tooltip() const;
    // The name of the system symbol to draw when there is no picture.
    [[nodiscard]] std::string fallbackSymbol() const;

    bool operator==(const OverflowItem&) const = default;
};

} // namespace pelistra
