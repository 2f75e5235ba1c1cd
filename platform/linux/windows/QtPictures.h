#pragma once

#include "platform/Image.h"
#include "platform/linux/images/Symbols.h"

#include <QColor>
#include <QImage>

class QPainter;

namespace pelistra::linux {

// The picture in device pixels at the given scale, its edges on whole pixels; a template picture
// wholly in the label's colour. A null image when it cannot be drawn. Icons of applications are
// looked up in the icon theme; a symbol stands in for one that is not there.
[[nodiscard]] QImage rendered(const Image& image, double scale, const QColor& label);

// Draws the symbol at the painter's origin in one colour, its strokes that much wider.
void draw(const Symbol& symbol, QPainter& painter, const QColor& color, double strokeFactor = 1);

} // namespace pelistra::linux
