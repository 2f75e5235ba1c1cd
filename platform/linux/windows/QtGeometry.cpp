#include "platform/linux/windows/QtGeometry.h"

#include <cmath>

#include <QGuiApplication>
#include <QScreen>

namespace pelistra::linux {

RootRect nativeGeometry(const QScreen& screen) {
    const QRect frame = screen.geometry();
    const QSize size = toNative(frame.size(), screen);
    return {.x = frame.x(), .y = frame.y(), .width = size.width(), .height = size.height()};
}

QScreen* qtScreenAt(int x, int y) {
    for (QScreen* screen : QGuiApplication::screens()) {
        const RootRect frame = nativeGeometry(*screen);
        if (x >= frame.x && x < frame.right() && y >= frame.y && y < frame.bottom()) {
            return screen;
        }
    }
    return QGuiApplication::primaryScreen();
}

QPoint toQt(int x, int y, const QScreen& screen) {
    const QPoint origin = screen.geometry().topLeft();
    const QPointF within = QPointF(QPoint(x, y) - origin) / screen.devicePixelRatio();
    return origin + within.toPoint();
}

QSize toNative(const QSize& size, const QScreen& screen) {
    return {static_cast<int>(std::lround(size.width() * screen.devicePixelRatio())),
            static_cast<int>(std::lround(size.height() * screen.devicePixelRatio()))};
}

} // namespace pelistra::linux
