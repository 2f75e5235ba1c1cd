#pragma once

#include "ui/Outline.h"

#include <QPainterPath>
#include <QRectF>

namespace pelistra::desktop {

// The outline in that area.
[[nodiscard]] QPainterPath pathOf(const ui::Outline& outline, const QRectF& area);

} // namespace pelistra::desktop
