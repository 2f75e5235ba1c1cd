#include "menubar/Artwork.h"

#include "menubar/Canvas.h"

#include <algorithm>
#include <memory>
#include <numbers>

namespace pelistra::menubar {

namespace {

template <class T>
using Owned = std::unique_ptr<T, CairoDeleter>;

void addStop(cairo_pattern_t* pattern, double offset, const Color& color) {
    cairo_pattern_add_color_stop_rgba(pattern, offset, color.red, color.green, color.blue,
                                      color.alpha);
}

// The line under the bar is one point thick at most, and never thinner than a device pixel.
int hairlineHeight(const Metrics& metrics) {
    return std::max(1, metrics.pixels(0.5));
}

struct Box {
    double x;
    double y;
    double width;
    double height;
};

void addRoundedBox(cairo_t* context, const Box& box, double radius) {
    using std::numbers::pi;
    const double right = box.x + box.width;
    const double bottom = box.y + box.height;
    cairo_new_sub_path(context);
    cairo_arc(context, right - radius, box.y + radius, radius, -pi / 2, 0);
    cairo_arc(context, right - radius, bottom - radius, radius, 0, pi / 2);
    cairo_arc(context, box.x + radius, bottom - radius, radius, pi / 2, pi);
    cairo_arc(context, box.x + radius, box.y + radius, radius, pi, 3 * pi / 2);
    cairo_close_path(context);
}

constexpr double fontSizeInPoints = 13;
// Between the application's name and the title.
constexpr double titleGapInPoints = 10;

// Draws at `x`, at most up to `limit`; returns where the text ends.
int drawText(cairo_t* context, PangoLayout* layout, int x, int limit, int height) {
    pango_layout_set_width(layout, std::max(0, limit - x) * PANGO_SCALE);
    int textWidth = 0;
    int textHeight = 0;
    pango_layout_get_pixel_size(layout, &textWidth, &textHeight);
    const int above = (height - textHeight) / 2;
    cairo_move_to(context, x, above);
    pango_cairo_show_layout(context, layout);
    return x + textWidth;
}

} // namespace

ArgbImage backgroundColumn(const Palette& palette, const Metrics& metrics) {
    const int height = metrics.barHeight();
    Canvas canvas(1, height);
    const Owned<cairo_pattern_t> gradient(cairo_pattern_create_linear(0, 0, 0, height));
    addStop(gradient.get(), 0, palette.top);
    addStop(gradient.get(), 1, palette.bottom);
    cairo_set_source(canvas.get(), gradient.get());
    cairo_paint(canvas.get());
    setColor(canvas.get(), palette.hairline);
    const int line = hairlineHeight(metrics);
    cairo_rectangle(canvas.get(), 0, height - line, 1, line);
    cairo_fill(canvas.get());
    return canvas.finish();
}

ArgbImage housingImage(int width, const Metrics& metrics) {
    constexpr double radiusInPoints = 8;
    const int height = metrics.barHeight();
    const double radius = std::min<double>(metrics.pixels(radiusInPoints), width / 2.0);
    Canvas canvas(width, height);
    // The upper corners lie beyond the screen's edge.
    addRoundedBox(canvas.get(),
                  {.x = 0, .y = -radius, .width = double(width), .height = height + radius},
                  radius);
    cairo_set_source_rgb(canvas.get(), 0, 0, 0);
    cairo_fill(canvas.get());
    return canvas.finish();
}

ArgbImage titleImage(const BarTitle& title, int width, const Palette& palette,
                     const Metrics& metrics) {
    const int height = metrics.barHeight() - hairlineHeight(metrics);
    if (width < metrics.barHeight() || (title.application.empty() && title.title.empty())) {
        return {};
    }
    const int size = metrics.pixels(fontSizeInPoints);
    Canvas canvas(width, height);
    int x = 0;
    if (!title.application.empty()) {
        const auto layout = textLayout(canvas.get(), title.application, size, Weight::Bold);
        setColor(canvas.get(), palette.text);
        x = drawText(canvas.get(), layout.get(), x, width, height) +
            metrics.pixels(titleGapInPoints);
    }
    if (!title.title.empty() && width - x >= metrics.barHeight()) {
        const auto layout = textLayout(canvas.get(), title.title, size);
        setColor(canvas.get(), palette.quietText);
        drawText(canvas.get(), layout.get(), x, width, height);
    }
    return canvas.finish();
}

int plateMargin(const Metrics& metrics) {
    constexpr double marginInPoints = 4;
    return metrics.pixels(marginInPoints);
}

ArgbImage plateImage(int itemWidth, const Palette& palette, const Metrics& metrics) {
    constexpr double radiusInPoints = 6;
    constexpr int shadowSteps = 4;
    const int margin = plateMargin(metrics);
    const int height = metrics.barHeight();
    Canvas canvas(itemWidth + 2 * margin, height);
    const double radius = std::min<double>(metrics.pixels(radiusInPoints), itemWidth / 2.0);
    const double inset = std::max(1, metrics.pixels(1));
    const Box box{.x = double(margin),
                  .y = inset,
                  .width = double(itemWidth),
                  .height = height - 2 * inset - hairlineHeight(metrics)};
    // A soft shadow: ever larger boxes, each adding a share of the darkness.
    Color shade = palette.shadow;
    shade.alpha /= shadowSteps;
    for (int step = shadowSteps; step > 0; --step) {
        const double spread = double(margin) * step / shadowSteps;
        addRoundedBox(canvas.get(),
                      {.x = box.x - spread,
                       .y = box.y - spread / 2 + inset,
                       .width = box.width + 2 * spread,
                       .height = box.height + spread},
                      radius + spread);
        setColor(canvas.get(), shade);
        cairo_fill(canvas.get());
    }
    addRoundedBox(canvas.get(), box, radius);
    setColor(canvas.get(), palette.plate);
    cairo_fill(canvas.get());
    return canvas.finish();
}

} // namespace pelistra::menubar
