#pragma once

#include "platform/Image.h"

#include <QColor>
#include <QImage>

class QPainter;

namespace pelistra::desktop {

// A picture that this front end has made.
class QtImage : public Image {
public:
    // Draws the picture at the painter's origin, in points, y downwards. `label` is the colour of
    // texts and symbols in the surroundings. False when nothing could be drawn.
    [[nodiscard]] virtual bool draw(QPainter& painter, const QColor& label) const = 0;
};

// The picture in device pixels at the given scale, its edges on whole pixels; a template picture
// wholly in the label's colour. A null image when it cannot be drawn (or is none of this front
// end).
[[nodiscard]] QImage rendered(const Image& image, double scale, const QColor& label);

// Pictures drawn by Qt; symbols are the project's own (Symbols.h).
class QtImages final : public Images {
public:
    [[nodiscard]] std::shared_ptr<Image>
    systemSymbol(std::string_view name, std::string_view accessibilityDescription) override;
    [[nodiscard]] std::shared_ptr<Image> drawn(Size size, DrawingHandler handler) override;
};

} // namespace pelistra::desktop
