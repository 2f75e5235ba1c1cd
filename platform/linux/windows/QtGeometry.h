#pragma once

#include "platform/linux/screens/Coordinates.h"

#include <QPoint>
#include <QSize>

class QScreen;

namespace pelistra::linux {

// Qt places windows in coordinates of its own: each of its screens keeps its native origin, and
// what lies within is divided by that screen's pixel ratio.

// The Qt screen that a root pixel lies on, or the primary one.
[[nodiscard]] QScreen* qtScreenAt(int x, int y);
[[nodiscard]] RootRect nativeGeometry(const QScreen& screen);
// A root pixel in Qt's coordinates.
[[nodiscard]] QPoint toQt(int x, int y, const QScreen& screen);
// A size in Qt's units as device pixels.
[[nodiscard]] QSize toNative(const QSize& size, const QScreen& screen);

} // namespace pelistra::linux
