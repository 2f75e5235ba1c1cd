#include "platform/linux/QtImages.h"

#include "platform/linux/Symbols.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QPainter>
#include <QPen>

namespace pelistra::desktop {

namespace {

class SymbolImage final : public QtImage {
public:
    explicit SymbolImage(Symbol symbol) : symbol_(std::move(symbol)) {}

    [[nodiscard]] Size size() const override {
        return {.width = symbol_.width, .height = symbol_.height};
    }

    [[nodiscard]] bool draw(QPainter& painter, const QColor& label) const override {
        pelistra::desktop::draw(symbol_, painter, label);
        return true;
    }

private:
    Symbol symbol_;
};

// A canvas whose y axis grows upwards, on a painter whose y axis grows downwards. Edges are moved
// to whole device pixels, so that a thin bar is as sharp at 150 % as it is at 100 %.
class PainterCanvas final : public Canvas {
public:
    PainterCanvas(QPainter& painter, double height, QColor label)
        : painter_(painter), height_(height), label_(label) {}

    void setFillColor(ColorRole role) override {
        switch (role) {
        case ColorRole::Label:
            fill_ = label_;
            break;
        }
    }

    void fillRoundedRect(const DrawRect& rect, double xRadius, double yRadius) override {
        const double scale = painter_.transform().m11();
        const double left = snapped(rect.minX(), scale);
        const double top = snapped(height_ - rect.maxY(), scale);
        const double width = std::max(snapped(rect.width(), scale), 1 / scale);
        const double height = std::max(snapped(rect.height(), scale), 1 / scale);
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(fill_);
        painter_.drawRoundedRect(QRectF(left, top, width, height), xRadius, yRadius);
    }

private:
    static double snapped(double points, double scale) {
        return std::round(points * scale) / scale;
    }

    QPainter& painter_;
    double height_;
    QColor label_;
    QColor fill_ = Qt::black;
};

class HandlerImage final : public QtImage {
public:
    HandlerImage(Size size, DrawingHandler handler) : size_(size), handler_(std::move(handler)) {}

    [[nodiscard]] Size size() const override { return size_; }

    [[nodiscard]] bool draw(QPainter& painter, const QColor& label) const override {
        PainterCanvas canvas(painter, size_.height, label);
        return handler_(canvas, makeRect<ScreenSpace>(0, 0, size_.width, size_.height));
    }

private:
    Size size_;
    DrawingHandler handler_;
};

} // namespace

QImage rendered(const Image& image, double scale, const QColor& label) {
    const auto* const drawable = dynamic_cast<const QtImage*>(&image);
    const Size size = image.size();
    QImage pixels(static_cast<int>(std::ceil(size.width * scale)),
                  static_cast<int>(std::ceil(size.height * scale)),
                  QImage::Format_ARGB32_Premultiplied);
    if (drawable == nullptr || pixels.isNull()) {
        return {};
    }
    pixels.fill(Qt::transparent);
    QPainter painter(&pixels);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    if (!drawable->draw(painter, label)) {
        return {};
    }
    if (image.isTemplate) {
        painter.resetTransform();
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixels.rect(), label);
    }
    return pixels;
}

std::shared_ptr<Image> QtImages::systemSymbol(std::string_view name,
                                              std::string_view accessibilityDescription) {
    auto symbol = symbolNamed(name);
    if (!symbol) {
        return nullptr;
    }
    auto image = std::make_shared<SymbolImage>(std::move(*symbol));
    image->accessibilityDescription = accessibilityDescription;
    return image;
}

std::shared_ptr<Image> QtImages::drawn(Size size, DrawingHandler handler) {
    return std::make_shared<HandlerImage>(size, std::move(handler));
}

} // namespace pelistra::desktop
