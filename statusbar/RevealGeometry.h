#pragma once

#include "base/Geometry.h"
#include "platform/Screens.h"

#include <optional>

namespace pelistra {

// How far the divider gives way so that one hidden item comes back on screen, and whether it did.
// Item frames are global coordinates and screens have their own; only horizontal coordinates are
// compared, which mean the same in both.
class RevealGeometry {
public:
    explicit RevealGeometry(const Screens& screens) : screens_(screens) {}

    // The first screen that spans the coordinate, both edges included; else the main screen; empty
    // when there is none.
    [[nodiscard]] std::optional<Screen> screen(double containingHorizontalPoint) const;

    // Whether the frame lies within one visible part of its screen's menu bar, 2 points clear of
    // both edges. Beside a camera housing each side is a part of its own.
    [[nodiscard]] bool isSafelyVisible(const Rect& frame) const;

    // The length, in points, that brings an item from its current frame to its home, but never
    // further right than 4 points inside the menu-bar area right of the camera housing. Never less
    // than the expanded length.
    [[nodiscard]] static double temporaryDividerLength(const Rect& currentItemFrame,
                                                       const Rect& home, const Screen& screen,
                                                       double dividerLength);

private:
    const Screens& screens_;
};

} // namespace pelistra
