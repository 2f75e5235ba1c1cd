#include "menubar/notifier/ToolTip.h"

#include "menubar/Canvas.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace pelistra::menubar {

namespace {

// As the organiser's tool tips are.
constexpr double gapInPoints = 4;
constexpr double paddingInPoints = 5;
constexpr double sidePaddingInPoints = 8;
constexpr double textSizeInPoints = 12;
constexpr double widthInPoints = 360;
constexpr Color darkField{.red = 0.227, .green = 0.227, .blue = 0.235};
constexpr Color lightField{.red = 0.98, .green = 0.98, .blue = 0.98};
constexpr Color lightInk{.red = 0.949, .green = 0.949, .blue = 0.949};
constexpr Color darkInk{.red = 0.125, .green = 0.125, .blue = 0.133};

// Instance and class, each with its final zero.
constexpr std::string_view windowClass{"pelistra-menubar\0Pelistra-menubar\0", 34};

std::string wholeText(const ToolTipText& text) {
    return text.title + (text.title.empty() || text.text.empty() ? "" : "\n") + text.text;
}

LayoutPtr makeLayout(cairo_t* context, const ToolTipText& text, const Metrics& metrics, int width) {
    LayoutPtr layout = textLayout(context, wholeText(text), metrics.pixels(textSizeInPoints));
    pango_layout_set_single_paragraph_mode(layout.get(), FALSE);
    if (!text.title.empty() && !text.text.empty()) {
        const std::unique_ptr<PangoAttrList, CairoDeleter> attributes(pango_attr_list_new());
        PangoAttribute* const bold = pango_attr_weight_new(PANGO_WEIGHT_SEMIBOLD);
        bold->end_index = static_cast<guint>(text.title.size());
        pango_attr_list_insert(attributes.get(), bold);
        pango_layout_set_attributes(layout.get(), attributes.get());
    }
    pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
    pango_layout_set_width(layout.get(), width * PANGO_SCALE);
    // So many lines of each paragraph.
    constexpr int mostLines = 4;
    pango_layout_set_height(layout.get(), -mostLines);
    return layout;
}

} // namespace

ArgbImage toolTipImage(const ToolTipText& text, bool dark, const Metrics& metrics, int mostWidth) {
    const int side = metrics.pixels(sidePaddingInPoints);
    const int above = metrics.pixels(paddingInPoints);
    const int width = std::max(1, std::min(metrics.pixels(widthInPoints), mostWidth - 2 * side));
    PangoRectangle extent{};
    {
        const Canvas measure(1, 1);
        pango_layout_get_pixel_extents(makeLayout(measure.get(), text, metrics, width).get(),
                                       nullptr, &extent);
    }
    Canvas canvas(extent.width + 2 * side, extent.height + 2 * above);
    setColor(canvas.get(), dark ? darkField : lightField);
    cairo_paint(canvas.get());
    // Without a compositor nothing else sets it off from what lies below.
    constexpr double edgeAlpha = 0.18;
    const Color& ink = dark ? lightInk : darkInk;
    cairo_set_source_rgba(canvas.get(), ink.red, ink.green, ink.blue, edgeAlpha);
    cairo_rectangle(canvas.get(), 0.5, 0.5, extent.width + 2 * side - 1,
                    extent.height + 2 * above - 1);
    cairo_set_line_width(canvas.get(), 1);
    cairo_stroke(canvas.get());
    const LayoutPtr layout = makeLayout(canvas.get(), text, metrics, width);
    // Lines of right-to-left scripts begin at the width's other end.
    cairo_move_to(canvas.get(), side - extent.x, above - extent.y);
    setColor(canvas.get(), ink);
    pango_cairo_show_layout(canvas.get(), layout.get());
    return canvas.finish();
}

void ToolTip::schedule(xcb_window_t owner) {
    hide();
    owner_ = owner;
    due_ = Clock::now() + delay;
}

void ToolTip::hide() {
    owner_ = XCB_NONE;
    due_.reset();
    window_.reset();
    text_ = {};
}

void ToolTip::show(const ToolTipText& text, const PixelRect& item, const PixelRect& bar, bool dark,
                   const Metrics& metrics) {
    due_.reset();
    if (text == text_) {
        return;
    }
    text_ = text;
    window_.reset();
    if (text == ToolTipText{}) {
        return;
    }
    const int gap = metrics.pixels(gapInPoints);
    const ArgbImage image = toolTipImage(text, dark, metrics, bar.width - 2 * gap);
    const int centred = item.x + (item.width - image.width) / 2;
    const int x = std::max(bar.x + gap, std::min(centred, bar.x + bar.width - gap - image.width));
    const x11::Connection& connection = server_->connection();
    xcb_connection_t* const xcb = server_->xcb();
    const xcb_screen_t& screen = connection.screen();
    window_ = WindowHandle(xcb, connection.newId());
    const std::array<std::uint32_t, 2> values{screen.black_pixel, 1};
    xcb_create_window(
        xcb, screen.root_depth, window_.id(), screen.root, static_cast<std::int16_t>(x),
        static_cast<std::int16_t>(bar.y + bar.height + gap),
        static_cast<std::uint16_t>(image.width), static_cast<std::uint16_t>(image.height), 0,
        XCB_WINDOW_CLASS_INPUT_OUTPUT, screen.root_visual,
        XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values.data());
    x11::setText(connection, window_.id(), XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                 std::string(windowClass));
    x11::setText(connection, window_.id(), server_->atom(Atom::NetWmName),
                 server_->atom(Atom::Utf8String), wholeText(text));
    const xcb_atom_t type = server_->atom(Atom::NetWmWindowTypeTooltip);
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window_.id(),
                        server_->atom(Atom::NetWmWindowType), XCB_ATOM_ATOM, 32, 1, &type);
    painter_->fill(window_.id(), screen.root_depth, image);
    xcb_map_window(xcb, window_.id());
    connection.flush();
}

} // namespace pelistra::menubar
