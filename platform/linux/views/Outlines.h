#pragma once

#include "ui/Outline.h"

#include <QPainterPath>
#include <QRectF>

namespace pelistra::linux {

// The outline in that area.
[[nodiscard]] QPainterPath pathOf(const ui::Outline& outline, const QRectF& area);

} // namespace pelistra::linux
