#pragma once

#include "platform/linux/images/LinuxImage.h"

#include <functional>
#include <memory>

#include <cairo.h>

namespace pelistra::linux {

struct CairoEnd {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using SurfacePtr = std::unique_ptr<cairo_surface_t, CairoEnd>;

// What the function draws on that many transparent pixels; empty when it says that there is
// nothing, or when there are no such pixels.
[[nodiscard]] Pixels drawn(int width, int height, const std::function<bool(cairo_t*)>& draw);

// A surface that shows the pixels, which must outlive it.
[[nodiscard]] SurfacePtr surfaceOf(const Pixels& pixels);

void setColour(cairo_t* context, const ui::Rgb& colour, double opacity = 1);
// Adds a rectangle whose corners are quarters of ellipses with these radii.
void addRoundedRect(cairo_t* context, double x, double y, double width, double height,
                    double xRadius, double yRadius);

// A picture drawn with cairo.
class DrawnImage : public LinuxImage {
public:
    [[nodiscard]] Pixels rendered(double scale, const ui::Rgb& label) const final;

private:
    // Draws the picture at the origin, in points, y downwards. False when nothing could be drawn.
    [[nodiscard]] virtual bool draw(cairo_t* context, const ui::Rgb& label) const = 0;
};

} // namespace pelistra::linux
