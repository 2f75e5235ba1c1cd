#include "platform/linux/views/Outlines.h"

#include <algorithm>
#include <array>
#include <variant>

#include <QPointF>

namespace pelistra::linux {

namespace {

// A corner with continuous curvature begins further from the edge's end than an arc would, by this
// factor of the radius, and meets the arc on the diagonal.
constexpr double continuousReach = 1.3;
// Eight times the distance of the middle of a quarter arc from the two edges, for radius 1:
// 8 * (1 - 1 / sqrt(2)).
constexpr double eightArcInsets = 2.3431457505;

QPainterPath continuousPath(const QRectF& area, double radius) {
    const double shorter = std::min(area.width(), area.height());
    const double reach = std::min(radius * continuousReach, shorter / 2);
    // Where the two inner control points of the cubic lie, so that its middle is the arc's.
    const double control = std::max(0.0, ((eightArcInsets * radius) - reach) / 3);
    const double left = area.left();
    const double top = area.top();
    const double right = area.right();
    const double bottom = area.bottom();
    QPainterPath path(QPointF(left + reach, top));
    path.lineTo(right - reach, top);
    path.cubicTo(right - control, top, right, top + control, right, top + reach);
    path.lineTo(right, bottom - reach);
    path.cubicTo(right, bottom - control, right - control, bottom, right - reach, bottom);
    path.lineTo(left + reach, bottom);
    path.cubicTo(left + control, bottom, left, bottom - control, left, bottom - reach);
    path.lineTo(left, top + reach);
    path.cubicTo(left, top + control, left + control, top, left + reach, top);
    path.closeSubpath();
    return path;
}

struct PathIn {
    QRectF area;

    QPainterPath operator()(const ui::Circle&) const {
        QPainterPath path;
        const double radius = std::min(area.width(), area.height()) / 2;
        path.addEllipse(area.center(), radius, radius);
        return path;
    }
    QPainterPath operator()(const ui::Capsule&) const {
        QPainterPath path;
        const double radius = std::min(area.width(), area.height()) / 2;
        path.addRoundedRect(area, radius, radius);
        return path;
    }
    QPainterPath operator()(const ui::Rectangle&) const {
        QPainterPath path;
        path.addRect(area);
        return path;
    }
    QPainterPath operator()(const ui::RoundedRectangle& rounded) const {
        const double radius =
            std::min(rounded.cornerRadius, std::min(area.width(), area.height()) / 2);
        if (rounded.continuous) {
            return continuousPath(area, radius);
        }
        QPainterPath path;
        path.addRoundedRect(area, radius, radius);
        return path;
    }
};

} // namespace

QPainterPath pathOf(const ui::Outline& outline, const QRectF& area) {
    return std::visit(PathIn{area}, outline);
}

} // namespace pelistra::linux
