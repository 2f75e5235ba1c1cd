#include "platform/linux/statusitem/StatusItemPicture.h"

#include "platform/linux/images/Drawing.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelistra::linux {

namespace {

// The rounded field behind an item that the pointer is on, in points: its distance from the bar's
// edges, its corners, and how strongly it takes the foreground colour.
constexpr double fieldMargin = 2;
constexpr double fieldSideMargin = 1;
constexpr double fieldRadius = 5;
constexpr double hoveredOpacity = 0.10;
constexpr double pressedOpacity = 0.22;

int pixelsOf(double points, double scale) {
    return static_cast<int>(std::lround(points * scale));
}

struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// In the item's middle. Rounded down, so that a picture of odd width in an item of even width leans
// to the left in every item.
Area centred(int width, int height, const StatusItemLook& look) {
    return {.x = (look.width - width) >> 1,
            .y = (look.height - height) >> 1,
            .width = width,
            .height = height};
}

// The smallest area around both that lies within the item.
Area seen(const Area& one, const Area& other, const StatusItemLook& look) {
    const int x = std::max(0, std::min(one.x, other.x));
    const int y = std::max(0, std::min(one.y, other.y));
    return {.x = x,
            .y = y,
            .width = std::min(look.width, std::max(one.x + one.width, other.x + other.width)) - x,
            .height =
                std::min(look.height, std::max(one.y + one.height, other.y + other.height)) - y};
}

void drawField(cairo_t* context, const StatusItemLook& look, const Area& area) {
    const int side = pixelsOf(fieldSideMargin, look.scale);
    const int margin = pixelsOf(fieldMargin, look.scale);
    const int width = area.width - 2 * side;
    const int height = area.height - 2 * margin;
    const double radius = std::min({fieldRadius * look.scale, width / 2.0, height / 2.0});
    setColour(context, look.foreground,
              look.feedback == StatusItemLook::Feedback::Pressed ? pressedOpacity : hoveredOpacity);
    addRoundedRect(context, side, margin, width, height, radius, radius);
    cairo_fill(context);
}

Pixels imageOf(const StatusItemLook& look) {
    const auto* const image = dynamic_cast<const LinuxImage*>(look.image.get());
    return image != nullptr ? image->rendered(look.scale, look.foreground) : Pixels();
}

} // namespace

StatusItemPicture pictureOf(const StatusItemLook& look) {
    const Pixels image = imageOf(look);
    const Area imageArea = centred(image.width, image.height, look);
    Area field = imageArea;
    if (look.feedback != StatusItemLook::Feedback::None) {
        // A field longer than this is no button any more.
        constexpr int longestField = 4;
        field = centred(std::min(look.width, longestField * look.height), look.height, look);
    }
    const Area area = seen(imageArea, field, look);
    Pixels pixels = drawn(area.width, area.height, [&](cairo_t* context) {
        if (look.feedback != StatusItemLook::Feedback::None) {
            drawField(context, look, area);
        }
        if (!image.isEmpty()) {
            const SurfacePtr surface = surfaceOf(image);
            cairo_set_source_surface(context, surface.get(), imageArea.x - area.x,
                                     imageArea.y - area.y);
            cairo_paint(context);
        }
        return true;
    });
    return {.pixels = std::move(pixels), .x = area.x, .y = area.y};
}

} // namespace pelistra::linux
