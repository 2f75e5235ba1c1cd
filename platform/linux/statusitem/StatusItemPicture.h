#pragma once

#include "platform/Image.h"
#include "platform/linux/images/Pixels.h"
#include "ui/Color.h"

namespace pelistra::linux {

// How a status item looks now.
struct StatusItemLook {
    enum class Feedback { None, Hovered, Pressed };

    // In device pixels.
    int width = 0;
    int height = 0;
    // Device pixels per point.
    double scale = 1;
    ImagePtr image = nullptr;
    ui::Rgb foreground = {};
    Feedback feedback = Feedback::None;
};

// What is to be seen in an item, and where in it.
struct StatusItemPicture {
    // Empty when there is nothing to see.
    Pixels pixels;
    int x = 0;
    int y = 0;
};

// The item's image in its middle, on whole pixels, over the feedback to the pointer. Only as large
// as what is to be seen: an item may be 10,000 points long.
[[nodiscard]] StatusItemPicture pictureOf(const StatusItemLook& look);

} // namespace pelistra::linux
