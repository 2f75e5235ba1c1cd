#include "menubar/notifier/NotifierArt.h"

#include "menubar/Canvas.h"
#include "menubar/Fitting.h"
#include "menubar/icons/IconRequest.h"
#include "platform/x11/Utf8.h"

#include <algorithm>
#include <numbers>

namespace pelistra::menubar {

namespace {

// What most icons of trays are drawn for.
constexpr double iconSideInPoints = 22;
constexpr double labelSizeInPoints = 13;
constexpr double labelGapInPoints = 4;
// A label may make the slot so much wider.
constexpr double longestLabelInPoints = 160;

struct Extent {
    int width = 0;
    int height = 0;
};

Extent extentOf(PangoLayout* layout) {
    Extent extent;
    pango_layout_get_pixel_size(layout, &extent.width, &extent.height);
    return extent;
}

void paintAt(cairo_t* context, ArgbImage& image, int x, int y) {
    const SurfacePtr surface = surfaceOver(image);
    cairo_set_source_surface(context, surface.get(), x, y);
    cairo_paint(context);
}

// A disc with the first letter of the name.
ArgbImage standIn(const std::string& name, const Palette& palette, int side) {
    constexpr double letterShare = 0.55;
    Canvas canvas(side, side);
    const double middle = side / 2.0;
    cairo_arc(canvas.get(), middle, middle, middle * 0.9, 0, 2 * std::numbers::pi);
    setColor(canvas.get(), palette.quietText);
    cairo_fill(canvas.get());
    const std::string letter = name.substr(0, x11::firstCharacter(name + ' ').length);
    const LayoutPtr layout = textLayout(canvas.get(), letter, side * letterShare, Weight::Bold);
    const Extent extent = extentOf(layout.get());
    cairo_move_to(canvas.get(), (side - extent.width) / 2.0, (side - extent.height) / 2.0);
    setColor(canvas.get(), palette.top);
    pango_cairo_show_layout(canvas.get(), layout.get());
    return canvas.finish();
}

int labelWidth(const std::string& label, const Metrics& metrics) {
    if (label.empty()) {
        return 0;
    }
    const Canvas measure(1, 1);
    const LayoutPtr layout = textLayout(measure.get(), label, metrics.pixels(labelSizeInPoints));
    return std::min(extentOf(layout.get()).width, metrics.pixels(longestLabelInPoints));
}

} // namespace

int iconSide(const Metrics& metrics) {
    return std::min(metrics.pixels(iconSideInPoints), longestIconSide);
}

ArgbImage slotImage(const SlotContent& content, const Palette& palette, const Metrics& metrics) {
    const int side = iconSide(metrics);
    const int height = metrics.barHeight();
    const int gap = metrics.pixels(labelGapInPoints);
    const int text = labelWidth(content.label, metrics);
    ArgbImage icon =
        content.icon.pixels.empty() ? standIn(content.name, palette, side) : content.icon;
    const int width = std::max(height, side + 2 * gap) + (text > 0 ? text + gap : 0);
    Canvas canvas(width, height);
    const int left = (width - (text > 0 ? text + gap : 0) - icon.width) / 2;
    const int above = (height - icon.height) / 2;
    paintAt(canvas.get(), icon, left, above);
    if (!content.overlay.pixels.empty()) {
        ArgbImage overlay = fitted(content.overlay, side / 2);
        paintAt(canvas.get(), overlay, left + icon.width - overlay.width,
                above + icon.height - overlay.height);
    }
    if (text > 0) {
        const LayoutPtr layout =
            textLayout(canvas.get(), content.label, metrics.pixels(labelSizeInPoints));
        pango_layout_set_width(layout.get(), text * PANGO_SCALE);
        const Extent extent = extentOf(layout.get());
        cairo_move_to(canvas.get(), width - text - gap, (height - extent.height) / 2.0);
        setColor(canvas.get(), palette.text);
        pango_cairo_show_layout(canvas.get(), layout.get());
    }
    return canvas.finish();
}

} // namespace pelistra::menubar
