#pragma once

#include "menubar/Artwork.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

#include <pango/pangocairo.h>

namespace pelistra::menubar {

struct CairoDeleter {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
    void operator()(PangoLayout* layout) const { g_object_unref(layout); }
    void operator()(PangoFontDescription* font) const { pango_font_description_free(font); }
    void operator()(PangoAttrList* attributes) const { pango_attr_list_unref(attributes); }
};

using SurfacePtr = std::unique_ptr<cairo_surface_t, CairoDeleter>;
using LayoutPtr = std::unique_ptr<PangoLayout, CairoDeleter>;

inline void setColor(cairo_t* context, const Color& color) {
    cairo_set_source_rgba(context, color.red, color.green, color.blue, color.alpha);
}

enum class Weight { Normal, Bold };

// A text in the bar's font, `size` device pixels high, on one line that ends in an ellipsis where
// it is cut.
[[nodiscard]] LayoutPtr textLayout(cairo_t* context, std::string_view text, double size,
                                   Weight weight = Weight::Normal);

// A surface over the pixels of an image, which must outlive it.
[[nodiscard]] inline SurfacePtr surfaceOver(ArgbImage& image) {
    constexpr int bytesPerPixel = 4;
    return SurfacePtr(cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(image.pixels.data()), CAIRO_FORMAT_ARGB32, image.width,
        image.height, image.width * bytesPerPixel));
}

// Draws into an image of its own.
class Canvas {
public:
    Canvas(int width, int height) : image_{.width = width, .height = height, .pixels = {}} {
        image_.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
        surface_ = surfaceOver(image_);
        context_.reset(cairo_create(surface_.get()));
    }

    [[nodiscard]] cairo_t* get() const { return context_.get(); }

    ArgbImage finish() {
        context_.reset();
        cairo_surface_flush(surface_.get());
        surface_.reset();
        return std::move(image_);
    }

private:
    ArgbImage image_;
    SurfacePtr surface_;
    std::unique_ptr<cairo_t, CairoDeleter> context_;
};

} // namespace pelistra::menubar
