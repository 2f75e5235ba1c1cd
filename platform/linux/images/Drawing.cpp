#include "platform/linux/images/Drawing.h"

#include <cmath>

namespace pelistra::linux {

namespace {

constexpr double mostOfChannel = 255;

// Cairo writes only where it is asked to, and only asks for memory that may be written.
SurfacePtr surfaceOn(std::uint32_t* values, int width, int height) {
    return SurfacePtr(cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(values), CAIRO_FORMAT_ARGB32, width, height,
        width * static_cast<int>(sizeof(std::uint32_t))));
}

} // namespace

Pixels drawn(int width, int height, const std::function<bool(cairo_t*)>& draw) {
    if (width <= 0 || height <= 0) {
        return {};
    }
    Pixels pixels{.width = width, .height = height, .values = {}};
    pixels.values.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const SurfacePtr surface = surfaceOn(pixels.values.data(), width, height);
    const std::unique_ptr<cairo_t, CairoEnd> context(cairo_create(surface.get()));
    const bool isDrawn = draw(context.get());
    cairo_surface_flush(surface.get());
    return isDrawn && cairo_status(context.get()) == CAIRO_STATUS_SUCCESS ? pixels : Pixels();
}

SurfacePtr surfaceOf(const Pixels& pixels) {
    // It is only read from.
    auto* values = const_cast<std::uint32_t*>(pixels.values.data());
    return surfaceOn(values, pixels.width, pixels.height);
}

void setColour(cairo_t* context, const ui::Rgb& colour, double opacity) {
    cairo_set_source_rgba(context, colour.red / mostOfChannel, colour.green / mostOfChannel,
                          colour.blue / mostOfChannel, opacity);
}

void addRoundedRect(cairo_t* context, double x, double y, double width, double height,
                    double xRadius, double yRadius) {
    if (xRadius <= 0 || yRadius <= 0) {
        cairo_rectangle(context, x, y, width, height);
        return;
    }
    const double aspect = yRadius / xRadius;
    cairo_matrix_t before;
    cairo_get_matrix(context, &before);
    cairo_translate(context, x, y);
    cairo_scale(context, 1, aspect);
    const double right = width - xRadius;
    const double bottom = height / aspect - xRadius;
    constexpr double quarter = M_PI / 2;
    cairo_new_sub_path(context);
    cairo_arc(context, right, xRadius, xRadius, -quarter, 0);
    cairo_arc(context, right, bottom, xRadius, 0, quarter);
    cairo_arc(context, xRadius, bottom, xRadius, quarter, 2 * quarter);
    cairo_arc(context, xRadius, xRadius, xRadius, 2 * quarter, 3 * quarter);
    cairo_close_path(context);
    cairo_set_matrix(context, &before);
}

Pixels DrawnImage::rendered(double scale, const ui::Rgb& label) const {
    const Size points = size();
    return drawn(static_cast<int>(std::ceil(points.width * scale)),
                 static_cast<int>(std::ceil(points.height * scale)), [&](cairo_t* context) {
                     cairo_save(context);
                     cairo_scale(context, scale, scale);
                     const bool isDrawn = draw(context, label);
                     cairo_restore(context);
                     if (isTemplate) {
                         cairo_set_operator(context, CAIRO_OPERATOR_IN);
                         setColour(context, label);
                         cairo_paint(context);
                     }
                     return isDrawn;
                 });
}

} // namespace pelistra::linux
