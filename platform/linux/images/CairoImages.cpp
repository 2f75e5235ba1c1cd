#include "platform/linux/images/CairoImages.h"

#include "platform/linux/images/Drawing.h"
#include "platform/linux/images/Symbols.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelistra::linux {

namespace {

struct Tracer {
    cairo_t* context;

    void operator()(const MoveTo& to) const { cairo_move_to(context, to.x, to.y); }
    void operator()(const LineTo& to) const { cairo_line_to(context, to.x, to.y); }
    void operator()(const CurveTo& to) const {
        cairo_curve_to(context, to.x1, to.y1, to.x2, to.y2, to.x, to.y);
    }
    void operator()(const ClosePath& /*close*/) const { cairo_close_path(context); }
};

void stroke(cairo_t* context, const Outline& outline, double width) {
    cairo_set_line_width(context, width);
    const Tracer tracer{context};
    trace(outline, tracer);
    cairo_stroke(context);
}

class SymbolImage final : public DrawnImage {
public:
    explicit SymbolImage(Symbol symbol) : symbol_(std::move(symbol)) {}

    [[nodiscard]] Size size() const override {
        return {.width = symbol_.width, .height = symbol_.height};
    }

private:
    [[nodiscard]] bool draw(cairo_t* context, const ui::Rgb& label) const override {
        setColour(context, label);
        cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
        cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
        const Tracer tracer{context};
        trace(symbol_.filled, tracer);
        cairo_fill(context);
        cairo_set_operator(context, CAIRO_OPERATOR_CLEAR);
        stroke(context, symbol_.cut, symbol_.cutWidth);
        cairo_set_operator(context, CAIRO_OPERATOR_OVER);
        stroke(context, symbol_.strokes, symbol_.strokeWidth);
        return true;
    }

    Symbol symbol_;
};

// A canvas whose y axis grows upwards, on a context whose y axis grows downwards. Edges are moved
// to whole device pixels, so that a thin bar is as sharp at 150 % as it is at 100 %.
class CairoCanvas final : public Canvas {
public:
    CairoCanvas(cairo_t* context, double height, const ui::Rgb& label)
        : context_(context), height_(height), label_(label) {
        cairo_matrix_t matrix;
        cairo_get_matrix(context, &matrix);
        scale_ = matrix.xx;
    }

    void setFillColor(ColorRole role) override {
        switch (role) {
        case ColorRole::Label:
            setColour(context_, label_);
            break;
        }
    }

    void fillRoundedRect(const DrawRect& rect, double xRadius, double yRadius) override {
        const double width = std::max(snapped(rect.width()), 1 / scale_);
        const double height = std::max(snapped(rect.height()), 1 / scale_);
        addRoundedRect(context_, snapped(rect.minX()), snapped(height_ - rect.maxY()), width,
                       height, std::min(xRadius, width / 2), std::min(yRadius, height / 2));
        cairo_fill(context_);
    }

private:
    [[nodiscard]] double snapped(double points) const {
        return std::round(points * scale_) / scale_;
    }

    cairo_t* context_;
    double height_;
    ui::Rgb label_;
    double scale_;
};

class HandlerImage final : public DrawnImage {
public:
    HandlerImage(Size size, DrawingHandler handler) : size_(size), handler_(std::move(handler)) {}

    [[nodiscard]] Size size() const override { return size_; }

private:
    [[nodiscard]] bool draw(cairo_t* context, const ui::Rgb& label) const override {
        CairoCanvas canvas(context, size_.height, label);
        return handler_(canvas, makeRect<ScreenSpace>(0, 0, size_.width, size_.height));
    }

    Size size_;
    DrawingHandler handler_;
};

} // namespace

std::shared_ptr<Image> CairoImages::systemSymbol(std::string_view name,
                                                 std::string_view accessibilityDescription) {
    auto symbol = symbolNamed(name);
    if (!symbol) {
        return nullptr;
    }
    auto image = std::make_shared<SymbolImage>(std::move(*symbol));
    image->accessibilityDescription = accessibilityDescription;
    return image;
}

std::shared_ptr<Image> CairoImages::drawn(Size size, DrawingHandler handler) {
    return std::make_shared<HandlerImage>(size, std::move(handler));
}

} // namespace pelistra::linux
