#include "platform/linux/QtConnection.h"

#include <QGuiApplication>
#include <QtGui/qguiapplication_platform.h>

namespace pelistra::desktop {

xcb_connection_t* qtConnection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

} // namespace pelistra::desktop
