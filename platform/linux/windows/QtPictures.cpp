#include "platform/linux/windows/QtPictures.h"

#include "platform/linux/images/LinuxImage.h"

#include <cmath>
#include <cstring>

#include <QIcon>
#include <QPainter>
#include <QPainterPath>
#include <QPainterPathStroker>
#include <QPen>

namespace pelistra::linux {

namespace {

struct Tracer {
    QPainterPath path;

    void operator()(const MoveTo& to) { path.moveTo(to.x, to.y); }
    void operator()(const LineTo& to) { path.lineTo(to.x, to.y); }
    void operator()(const CurveTo& to) { path.cubicTo(to.x1, to.y1, to.x2, to.y2, to.x, to.y); }
    void operator()(const ClosePath& /*close*/) { path.closeSubpath(); }
};

QPainterPath pathOf(const Outline& outline) {
    Tracer tracer;
    trace(outline, tracer);
    return tracer.path;
}

QPen penOf(const QColor& color, double width) {
    return {color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

QImage transparent(int width, int height) {
    QImage pixels(width, height, QImage::Format_ARGB32_Premultiplied);
    pixels.fill(Qt::transparent);
    return pixels;
}

// In place of an application's icon that is not there.
QImage standIn(int edge, const QColor& label) {
    QImage pixels = transparent(edge, edge);
    if (const auto symbol = symbolNamed("circle.grid.2x2")) {
        QPainter painter(&pixels);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(edge / symbol->width, edge / symbol->height);
        draw(*symbol, painter, label);
    }
    return pixels;
}

QImage renderedIcon(const ThemeIcon& named, double scale, const QColor& label) {
    const QString name = QString::fromStdString(named.name);
    const QIcon icon = name.startsWith(QLatin1Char('/')) ? QIcon(name) : QIcon::fromTheme(name);
    const int edge = static_cast<int>(std::ceil(ThemeIcon::edge * scale));
    if (icon.availableSizes().isEmpty()) {
        named.isMissing = true;
        return standIn(edge, label);
    }
    QImage pixels = transparent(edge, edge);
    QPainter painter(&pixels);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // The icon's own picture for these device pixels, not an enlarged one.
    painter.drawPixmap(pixels.rect(), icon.pixmap(pixels.size()));
    return pixels;
}

} // namespace

QImage rendered(const Image& image, double scale, const QColor& label) {
    if (const auto* const icon = dynamic_cast<const ThemeIcon*>(&image)) {
        return renderedIcon(*icon, scale, label);
    }
    const auto* const own = dynamic_cast<const LinuxImage*>(&image);
    if (own == nullptr) {
        return {};
    }
    const auto channel = [](int value) { return static_cast<std::uint8_t>(value); };
    const Pixels drawn = own->rendered(scale, {.red = channel(label.red()),
                                               .green = channel(label.green()),
                                               .blue = channel(label.blue())});
    QImage pixels(drawn.width, drawn.height, QImage::Format_ARGB32_Premultiplied);
    if (!pixels.isNull()) {
        std::memcpy(pixels.bits(), drawn.values.data(),
                    drawn.values.size() * sizeof drawn.values.front());
    }
    return pixels;
}

void draw(const Symbol& symbol, QPainter& painter, const QColor& color, double strokeFactor) {
    painter.strokePath(pathOf(symbol.strokes), penOf(color, symbol.strokeWidth * strokeFactor));
    QPainterPath filled = pathOf(symbol.filled);
    if (!symbol.cut.empty()) {
        const QPainterPathStroker cutter(penOf(color, symbol.cutWidth));
        filled = filled.subtracted(cutter.createStroke(pathOf(symbol.cut)));
    }
    painter.fillPath(filled, color);
}

} // namespace pelistra::linux
