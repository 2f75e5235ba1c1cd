#include "platform/linux/StatusItemPicture.h"

#include "platform/linux/QtImages.h"

#include <algorithm>
#include <cmath>

#include <QPainter>

namespace pelistra::desktop {

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

void drawField(QPainter& painter, const StatusItemLook& look, const QRect& area) {
    const int side = pixelsOf(fieldSideMargin, look.scale);
    const int margin = pixelsOf(fieldMargin, look.scale);
    QColor colour = look.foreground;
    colour.setAlphaF(static_cast<float>(
        look.feedback == StatusItemLook::Feedback::Pressed ? pressedOpacity : hoveredOpacity));
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    const double radius = fieldRadius * look.scale;
    painter.drawRoundedRect(area.adjusted(side, margin, -side, -margin), radius, radius);
}

QRect centred(const QSize& size, const StatusItemLook& look) {
    // Rounded down, so that a picture of odd width in an item of even width leans to the left in
    // every item.
    return {{(look.width - size.width()) >> 1, (look.height - size.height()) >> 1}, size};
}

} // namespace

StatusItemPicture pictureOf(const StatusItemLook& look) {
    const QRect bounds(0, 0, look.width, look.height);
    const QImage image = look.image ? rendered(*look.image, look.scale, look.foreground) : QImage();
    const QRect imageArea = centred(image.size(), look);
    QRect area = image.isNull() ? QRect() : imageArea.intersected(bounds);
    if (look.feedback != StatusItemLook::Feedback::None) {
        // A field longer than this is no button any more.
        constexpr int longestField = 4;
        const QSize field(std::min(look.width, longestField * look.height), look.height);
        area = area.united(centred(field, look)).intersected(bounds);
    }
    if (area.isEmpty()) {
        return {};
    }
    QImage pixels(area.size(), QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(-area.topLeft());
    if (look.feedback != StatusItemLook::Feedback::None) {
        drawField(painter, look, area);
    }
    if (!image.isNull()) {
        painter.drawImage(imageArea.topLeft(), image);
    }
    painter.end();
    return {.pixels = pixels, .x = area.x(), .y = area.y()};
}

} // namespace pelistra::desktop
