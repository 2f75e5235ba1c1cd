#pragma once

#include "menubar/Artwork.h"

#include <string>

namespace pelistra::menubar {

// What the slot of an item of the session bus shows.
struct SlotContent {
    ArgbImage icon;
    // In a corner of the icon.
    ArgbImage overlay;
    // Beside the icon.
    std::string label;
    // Stands for an icon that cannot be found, by its first letter.
    std::string name;
};

// The side of the square that icons are fitted into, in device pixels.
[[nodiscard]] int iconSide(const Metrics& metrics);

// The slot's picture, as high as the bar and as wide as what is in it needs.
[[nodiscard]] ArgbImage slotImage(const SlotContent& content, const Palette& palette,
                                  const Metrics& metrics);

} // namespace pelistra::menubar
