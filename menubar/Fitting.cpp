#include "menubar/Fitting.h"

#include "menubar/Canvas.h"

#include <algorithm>

namespace pelistra::menubar {

ArgbImage fitted(ArgbImage image, int side) {
    const int longest = std::max(image.width, image.height);
    if (longest < 1 || longest == side || (longest < side && side / longest == 1)) {
        return image;
    }
    // Enlarged a whole number of times.
    const int times = side / longest;
    const double factor = times > 0 ? times : static_cast<double>(side) / longest;
    const int width = std::max(1, static_cast<int>(image.width * factor));
    const int height = std::max(1, static_cast<int>(image.height * factor));
    Canvas canvas(width, height);
    cairo_scale(canvas.get(), static_cast<double>(width) / image.width,
                static_cast<double>(height) / image.height);
    const SurfacePtr surface = surfaceOver(image);
    cairo_set_source_surface(canvas.get(), surface.get(), 0, 0);
    cairo_pattern_t* const pattern = cairo_get_source(canvas.get());
    cairo_pattern_set_filter(pattern, longest < side ? CAIRO_FILTER_NEAREST : CAIRO_FILTER_BEST);
    // What lies beyond the edge is no part of the picture.
    cairo_pattern_set_extend(pattern, CAIRO_EXTEND_PAD);
    cairo_paint(canvas.get());
    return canvas.finish();
}

} // namespace pelistra::menubar
