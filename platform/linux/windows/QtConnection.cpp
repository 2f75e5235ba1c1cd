#include "platform/linux/windows/QtConnection.h"

#include "platform/x11/Connection.h"

#include <QGuiApplication>
#include <QWindow>
#include <QtGui/qguiapplication_platform.h>

namespace pelistra::linux {

xcb_connection_t* qtConnection() {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr ? x11->connection() : nullptr;
}

bool isQtWindow(xcb_window_t window) {
    xcb_connection_t* const connection = qtConnection();
    return connection != nullptr && x11::Connection::hasMade(connection, window);
}

std::vector<xcb_window_t> shownQtWindows() {
    std::vector<xcb_window_t> shown;
    for (const QWindow* const window : QGuiApplication::topLevelWindows()) {
        if (window->isVisible() && window->handle() != nullptr) {
            shown.push_back(static_cast<xcb_window_t>(window->winId()));
        }
    }
    return shown;
}

} // namespace pelistra::linux
