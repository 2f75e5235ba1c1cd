#include "platform/linux/Symbols.h"

#include <algorithm>
#include <array>

#include <QPainter>
#include <QPainterPathStroker>
#include <QPen>
#include <QPointF>

namespace pelistra::desktop {

namespace {

// The stroke of an arrow beside 13-point text, and of a picture with more lines in it.
constexpr double arrowStroke = 1.75;
constexpr double pictureStroke = 1.25;

using Points = std::initializer_list<QPointF>;

void addLine(QPainterPath& path, Points points) {
    path.moveTo(*points.begin());
    for (const QPointF& point : points) {
        path.lineTo(point);
    }
}

void addCircle(QPainterPath& path, double x, double y, double radius) {
    path.addEllipse(QPointF(x, y), radius, radius);
}

// A part of a circle, angles in degrees counted counterclockwise from three o'clock.
void addArc(QPainterPath& path, double x, double y, double radius, double start, double sweep) {
    const QRectF circle(x - radius, y - radius, 2 * radius, 2 * radius);
    path.arcMoveTo(circle, start);
    path.arcTo(circle, start, sweep);
}

Symbol picture(double width, double height) {
    return {.width = width,
            .height = height,
            .strokes = {},
            .strokeWidth = pictureStroke,
            .filled = {}};
}

Symbol arrow(double width, double height, Points points) {
    Symbol symbol = picture(width, height);
    symbol.strokeWidth = arrowStroke;
    addLine(symbol.strokes, points);
    return symbol;
}

// The arms of a chevron meet at a right angle in the narrow direction's middle; the ends keep half
// a stroke and a little air to the edge.
Symbol chevronRight() {
    return arrow(8, 13, {{1.5, 1.5}, {6.5, 6.5}, {1.5, 11.5}});
}

Symbol chevronUp() {
    return arrow(13, 8, {{1.5, 6.5}, {6.5, 1.5}, {11.5, 6.5}});
}

Symbol chevronDown() {
    return arrow(13, 8, {{1.5, 1.5}, {6.5, 6.5}, {11.5, 1.5}});
}

Symbol checkmark() {
    return arrow(14, 12, {{1.5, 6.6}, {5.3, 10.4}, {12.5, 1.6}});
}

// A camera body with its finder bump, and a badge with three dots at the lower corner.
Symbol cameraBadge() {
    Symbol symbol = picture(19, 16);
    QPainterPath& path = symbol.strokes;
    path.moveTo(8.4, 12.6);
    path.lineTo(3, 12.6);
    path.cubicTo(1.8, 12.6, 1, 11.8, 1, 10.6);
    path.lineTo(1, 4.9);
    path.cubicTo(1, 3.7, 1.8, 2.9, 3, 2.9);
    path.lineTo(4.6, 2.9);
    path.lineTo(5.6, 1.4);
    path.lineTo(10.2, 1.4);
    path.lineTo(11.2, 2.9);
    path.lineTo(12.8, 2.9);
    path.cubicTo(14, 2.9, 14.8, 3.7, 14.8, 4.9);
    path.lineTo(14.8, 6.2);
    addArc(path, 7.9, 7.5, 2.6, 0, 360);
    QPainterPath badge;
    addCircle(badge, 14, 11.4, 4.2);
    QPainterPath dots;
    for (const double x : {12.0, 14.0, 16.0}) {
        addCircle(dots, x, 11.4, 0.62);
    }
    symbol.filled = badge.subtracted(dots);
    return symbol;
}

// Three slide controls one under the other.
Symbol sliders() {
    Symbol symbol = picture(17, 14);
    struct Row {
        double y;
        double knob;
    };
    constexpr double radius = 1.55;
    for (const auto& [y, knob] : {Row{2.2, 11.2}, Row{7, 5.2}, Row{11.8, 9.4}}) {
        addLine(symbol.strokes, {{1, y}, {knob - radius, y}});
        addCircle(symbol.strokes, knob, y, radius);
        addLine(symbol.strokes, {{knob + radius, y}, {16, y}});
    }
    return symbol;
}

Symbol wifi() {
    Symbol symbol = picture(18, 14);
    symbol.strokeWidth = 1.5;
    constexpr double x = 9;
    constexpr double y = 11.6;
    for (const double radius : {3.6, 6.9, 10.2}) {
        addArc(symbol.strokes, x, y, radius, 46, 88);
    }
    addCircle(symbol.filled, x, y, 1.3);
    return symbol;
}

Symbol battery() {
    Symbol symbol = picture(22, 12);
    symbol.strokes.addRoundedRect(QRectF(1, 1.4, 17.4, 9.2), 2.8, 2.8);
    symbol.filled.addRoundedRect(QRectF(2.9, 3.3, 10.2, 5.4), 1.3, 1.3);
    QPainterPath cap;
    cap.moveTo(19.9, 4.2);
    cap.quadTo(21.3, 4.8, 21.3, 6);
    cap.quadTo(21.3, 7.2, 19.9, 7.8);
    cap.closeSubpath();
    symbol.filled.addPath(cap);
    return symbol;
}

Symbol clock() {
    Symbol symbol = picture(15, 15);
    addCircle(symbol.strokes, 7.5, 7.5, 6.5);
    addLine(symbol.strokes, {{7.5, 3.6}, {7.5, 7.7}, {10.3, 9.3}});
    return symbol;
}

Symbol speaker() {
    Symbol symbol = picture(17, 14);
    QPainterPath body(QPointF(1, 5));
    body.lineTo(3.4, 5);
    body.lineTo(7.2, 1.9);
    body.lineTo(7.2, 12.1);
    body.lineTo(3.4, 9);
    body.lineTo(1, 9);
    body.closeSubpath();
    symbol.strokes = body;
    symbol.filled = body;
    addArc(symbol.strokes, 7.4, 7, 3.6, -42, 84);
    addArc(symbol.strokes, 7.4, 7, 6.8, -42, 84);
    return symbol;
}

Symbol playCircle() {
    Symbol symbol = picture(15, 15);
    addCircle(symbol.strokes, 7.5, 7.5, 6.5);
    QPainterPath triangle(QPointF(6.1, 4.9));
    triangle.lineTo(10.5, 7.5);
    triangle.lineTo(6.1, 10.1);
    triangle.closeSubpath();
    symbol.filled = triangle;
    return symbol;
}

Symbol keyboard() {
    Symbol symbol = picture(20, 14);
    symbol.strokes.addRoundedRect(QRectF(1, 1.4, 18, 11.2), 2.4, 2.4);
    for (const double x : {4.4, 7.2, 10.0, 12.8, 15.6}) {
        symbol.filled.addRoundedRect(QRectF(x - 0.8, 3.8, 1.6, 1.6), 0.5, 0.5);
        symbol.filled.addRoundedRect(QRectF(x - 0.8, 6.4, 1.6, 1.6), 0.5, 0.5);
    }
    symbol.filled.addRoundedRect(QRectF(6.2, 9.2, 7.6, 1.4), 0.7, 0.7);
    return symbol;
}

Symbol grid() {
    Symbol symbol = picture(14, 14);
    for (const double x : {3.7, 10.3}) {
        for (const double y : {3.7, 10.3}) {
            addCircle(symbol.strokes, x, y, 2.4);
        }
    }
    return symbol;
}

Symbol checkedShield() {
    Symbol symbol = picture(14, 16);
    QPainterPath shield(QPointF(7, 0.8));
    shield.cubicTo(8.6, 2.1, 10.6, 2.9, 12.8, 3.1);
    shield.lineTo(12.8, 7.6);
    shield.cubicTo(12.8, 11.2, 10.4, 13.8, 7, 15.2);
    shield.cubicTo(3.6, 13.8, 1.2, 11.2, 1.2, 7.6);
    shield.lineTo(1.2, 3.1);
    shield.cubicTo(3.4, 2.9, 5.4, 2.1, 7, 0.8);
    shield.closeSubpath();
    QPainterPath check;
    addLine(check, {{4.3, 8}, {6.3, 10.1}, {9.8, 5.6}});
    const QPainterPathStroker pen(QPen(Qt::black, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    symbol.filled = shield.subtracted(pen.createStroke(check));
    return symbol;
}

// A square whose sides run on into a loop at each corner.
Symbol command() {
    Symbol symbol = picture(14, 14);
    symbol.strokeWidth = 1.2;
    constexpr double near = 5;
    constexpr double far = 9;
    constexpr double loop = 1.95;
    QPainterPath& path = symbol.strokes;
    const QRectF topLeft(near - (2 * loop), near - (2 * loop), 2 * loop, 2 * loop);
    path.moveTo(near, far);
    path.lineTo(near, near - loop);
    path.arcTo(topLeft, 0, 270);
    path.lineTo(far + loop, near);
    path.arcTo(topLeft.translated(far - near + (2 * loop), 0), 270, 270);
    path.lineTo(far, far + loop);
    path.arcTo(topLeft.translated(far - near + (2 * loop), far - near + (2 * loop)), 180, 270);
    path.lineTo(near - loop, far);
    path.arcTo(topLeft.translated(0, far - near + (2 * loop)), 90, 270);
    path.closeSubpath();
    return symbol;
}

struct NamedSymbol {
    std::string_view name;
    Symbol (*make)();
};

constexpr std::array symbols{
    NamedSymbol{.name = "battery.75percent", .make = battery},
    NamedSymbol{.name = "camera.badge.ellipsis", .make = cameraBadge},
    NamedSymbol{.name = "checkmark", .make = checkmark},
    NamedSymbol{.name = "checkmark.shield.fill", .make = checkedShield},
    NamedSymbol{.name = "chevron.down", .make = chevronDown},
    NamedSymbol{.name = "chevron.right", .make = chevronRight},
    NamedSymbol{.name = "chevron.up", .make = chevronUp},
    NamedSymbol{.name = "circle.grid.2x2", .make = grid},
    NamedSymbol{.name = "clock", .make = clock},
    NamedSymbol{.name = "command", .make = command},
    NamedSymbol{.name = "keyboard", .make = keyboard},
    NamedSymbol{.name = "play.circle", .make = playCircle},
    NamedSymbol{.name = "slider.horizontal.3", .make = sliders},
    NamedSymbol{.name = "speaker.wave.2", .make = speaker},
    NamedSymbol{.name = "wifi", .make = wifi},
};

} // namespace

std::optional<Symbol> symbolNamed(std::string_view name) {
    const auto* const found = std::ranges::find(symbols, name, &NamedSymbol::name);
    return found != symbols.end() ? std::optional(found->make()) : std::nullopt;
}

void draw(const Symbol& symbol, QPainter& painter, const QColor& color, double strokeFactor) {
    painter.strokePath(symbol.strokes, QPen(color, symbol.strokeWidth * strokeFactor, Qt::SolidLine,
                                            Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(symbol.filled, color);
}

} // namespace pelistra::desktop
