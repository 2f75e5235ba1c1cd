#include "platform/linux/windows/UnusedMemory.h"

#include "platform/linux/windows/WindowFrame.h"
#include "platform/posix/UnusedMemory.h"

#include <algorithm>

#include <QApplication>
#include <QByteArray>
#include <QFontDatabase>
#include <QPixmapCache>

namespace pelistra::linux {

namespace {

// Longer than a user takes to come back to what was closed by accident.
constexpr Seconds untilGivenBack{2};

bool windowShows() {
    return std::ranges::any_of(QApplication::topLevelWidgets(), [](const QWidget* widget) {
        return widget->isVisible() && dynamic_cast<const WindowFrame*>(widget) != nullptr;
    });
}

// Qt forgets every font that it has loaded once a font of the application's own goes, and there is
// no other public way. Bytes that are no font take part in that.
void forgetFonts() {
    QFontDatabase::addApplicationFontFromData(QByteArrayLiteral("none"));
    QFontDatabase::removeAllApplicationFonts();
}

} // namespace

void UnusedMemory::giveBackAfterWindow() {
    mainQueue_.asyncAfter(untilGivenBack, lifetime_.guard([] {
        if (!windowShows()) {
            giveBackWindowMemory();
        }
    }));
}

void UnusedMemory::giveBackWindowMemory() {
    forgetFonts();
    QPixmapCache::clear();
    posix::giveBackUnusedMemory();
}

} // namespace pelistra::linux
