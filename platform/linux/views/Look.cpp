#include "platform/linux/views/Look.h"

#include "ui/Palette.h"

#include <algorithm>
#include <variant>

#include <QLinearGradient>

namespace pelistra::linux {

QColor withOpacity(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(color.alphaF() * std::clamp(opacity, 0.0, 1.0)));
    return color;
}

QColor resolved(const ui::Tone& tone, const Look& look) {
    const ui::Rgb& rgb = look.isDark ? tone.dark : tone.light;
    return {rgb.red, rgb.green, rgb.blue};
}

QColor resolved(ui::Role role, const Look& look, double opacity) {
    return withOpacity(resolved(ui::palette::standardTone(role), look), opacity);
}

QColor resolved(const ui::Color& color, const Look& look) {
    if (const auto* tone = std::get_if<ui::Tone>(&color.base)) {
        return withOpacity(resolved(*tone, look), color.opacity);
    }
    return resolved(std::get<ui::Role>(color.base), look, color.opacity);
}

QBrush resolved(const ui::LinearGradient& gradient, const QRectF& area, const Look& look) {
    const auto at = [&area](const ui::UnitPoint& point) {
        return QPointF(area.x() + (point.x * area.width()), area.y() + (point.y * area.height()));
    };
    QLinearGradient line(at(gradient.start), at(gradient.end));
    const auto last = std::max<std::size_t>(gradient.colors.size(), 2) - 1;
    for (std::size_t place = 0; place < gradient.colors.size(); ++place) {
        line.setColorAt(static_cast<double>(place) / static_cast<double>(last),
                        resolved(gradient.colors[place], look));
    }
    return line;
}

QColor mixed(const QColor& from, const QColor& to, double progress) {
    const auto part = static_cast<float>(std::clamp(progress, 0.0, 1.0));
    const auto between = [part](float a, float b) { return a + ((b - a) * part); };
    return QColor::fromRgbF(between(from.redF(), to.redF()), between(from.greenF(), to.greenF()),
                            between(from.blueF(), to.blueF()), between(from.alphaF(), to.alphaF()));
}

} // namespace pelistra::linux
