#pragma once

#include "base/Geometry.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace pelistra {

// Colours by meaning; the front end resolves them for the current look.
enum class ColorRole { Label };

// What a drawing handler draws on. Coordinates are points with the origin at the bottom-left of the
// destination rectangle and y growing upwards (an image that is not flipped).
class Canvas {
public:
    using DrawRect = BasicRect<ScreenSpace>;

    Canvas() = default;
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    virtual ~Canvas() = default;

    // For everything that is filled from now on.
    virtual void setFillColor(ColorRole role) = 0;
    // Fills a rectangle whose corners are quarters of ellipses with these radii, in points.
    virtual void fillRoundedRect(const DrawRect& rect, double xRadius, double yRadius) = 0;
};

// Draws into the given rectangle; false means that nothing could be drawn.
using DrawingHandler = std::function<bool(Canvas& canvas, const Canvas::DrawRect& destination)>;

// A picture of the platform. Whoever makes one sets its two attributes before handing it on.
class Image {
public:
    Image() = default;
    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;
    virtual ~Image() = default;

    // Nominal size in points.
    [[nodiscard]] virtual Size size() const = 0;

    // A template picture is drawn in the colour of its surroundings, with its own shape as mask.
    bool isTemplate = false;
    // What a screen reader says; empty when there is nothing to say.
    std::string accessibilityDescription;
};

using ImagePtr = std::shared_ptr<const Image>;

// Pixels that were taken from somewhere and have no nominal size yet.
class Bitmap {
public:
    Bitmap() = default;
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;
    virtual ~Bitmap() = default;

    // In pixels of the bitmap, whatever the screen's scale is.
    [[nodiscard]] virtual std::size_t pixelWidth() const = 0;
    [[nodiscard]] virtual std::size_t pixelHeight() const = 0;

    // A picture of these pixels with the given nominal size in points. Never null.
    [[nodiscard]] virtual std::shared_ptr<Image> image(Size size) const = 0;
};

// Makes pictures.
class Images {
public:
    Images() = default;
    Images(const Images&) = delete;
    Images& operator=(const Images&) = delete;
    virtual ~Images() = default;

    // The system's symbol with that name, carrying the given description; null when the system has
    // no such symbol.
    [[nodiscard]] virtual std::shared_ptr<Image>
    systemSymbol(std::string_view name, std::string_view accessibilityDescription) = 0;

    // A picture of the given size in points that calls the handler whenever it has to be drawn, at
    // whatever scale and look that is. Never null.
    [[nodiscard]] virtual std::shared_ptr<Image> drawn(Size size, DrawingHandler handler) = 0;
};

} // namespace pelistra
