#pragma once

#include <vector>

#include <QImage>
#include <QRect>

namespace pelistra::linux {

// What a panel looks like from outside: which of its pixels belong to it, and what it casts around
// them. Everything is in device pixels.

// How much a pixel belongs to what is drawn (Format_Alpha8): fully from half opaque on, so that a
// translucent card counts as a whole.
[[nodiscard]] QImage coverageOf(const QImage& drawn);

// The pixels that belong at least half, as rectangles in rows from top to bottom, `margin` pixels
// more on every side.
[[nodiscard]] std::vector<QRect> regionOf(const QImage& coverage, int margin);

// The shadow around the coverage for that many device pixels per point: a soft one that falls
// downwards, a close one, and a hairline. Nothing of it lies under the coverage itself.
[[nodiscard]] QImage shadowAround(const QImage& coverage, double scale);

// How far the shadow reaches beyond what casts it, in points.
inline constexpr int shadowReachSide = 25;
inline constexpr int shadowReachTop = 18;
inline constexpr int shadowReachBottom = 32;

} // namespace pelistra::linux
