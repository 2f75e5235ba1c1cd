#pragma once

#include "ui/Color.h"

#include <string>

#include <QBrush>
#include <QColor>
#include <QRectF>

namespace pelistra::linux {

// How the desktop wants programs to look at the moment.
struct Look {
    bool isDark = false;
    // The user asked the desktop to avoid motion.
    bool reduceMotion = false;
    // The size of body text in points; every text style grows with it.
    double bodySize = 13;
    // The desktop's own font family in UTF-8; empty when it names none.
    std::string fontFamily;

    bool operator==(const Look&) const = default;
};

[[nodiscard]] QColor resolved(const ui::Tone& tone, const Look& look);
[[nodiscard]] QColor resolved(const ui::Color& color, const Look& look);
[[nodiscard]] QColor resolved(ui::Role role, const Look& look, double opacity = 1);

// The gradient across that area.
[[nodiscard]] QBrush resolved(const ui::LinearGradient& gradient, const QRectF& area,
                              const Look& look);

// Between two colours, each channel by itself; 0 is the first, 1 the second.
[[nodiscard]] QColor mixed(const QColor& from, const QColor& to, double progress);
[[nodiscard]] QColor withOpacity(QColor color, double opacity);

} // namespace pelistra::linux
