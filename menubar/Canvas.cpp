#include "menubar/Canvas.h"

namespace pelistra::menubar {

LayoutPtr textLayout(cairo_t* context, std::string_view text, double size, Weight weight) {
    LayoutPtr layout(pango_cairo_create_layout(context));
    const std::unique_ptr<PangoFontDescription, CairoDeleter> font(pango_font_description_new());
    pango_font_description_set_family_static(font.get(), "Sans");
    pango_font_description_set_weight(font.get(), weight == Weight::Bold ? PANGO_WEIGHT_BOLD
                                                                         : PANGO_WEIGHT_NORMAL);
    pango_font_description_set_absolute_size(font.get(), size * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    return layout;
}

} // namespace pelistra::menubar
