#include "tests/linux/windows/QtOnDisplay.h"

#include <cstdlib>

namespace pelistra::testing {

QtOnDisplay::QtOnDisplay(const PrivateDisplay::Options& options, const char* scaleFactor)
    : display_(options) {
    ::setenv("DISPLAY", display_.name().c_str(), 1);
    ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    ::setenv("QT_SCALE_FACTOR", scaleFactor, 1);
    ::setenv("QT_NO_XDG_DESKTOP_PORTAL", "1", 1);
    ::setenv("XDG_RUNTIME_DIR", display_.folder().c_str(), 1);
    ::setenv("DBUS_SESSION_BUS_ADDRESS",
             display_.environment().at("DBUS_SESSION_BUS_ADDRESS").c_str(), 1);
    application_ = std::make_unique<QApplication>(count_, arguments_.data());
    QApplication::setQuitOnLastWindowClosed(false);
    x11::Connection::Failure failure;
    connection_ = x11::Connection::open({}, failure);
    if (connection_ == nullptr) {
        throw std::runtime_error(failure.message);
    }
    connection_->setPatience(x11::Connection::startPatience);
    queue_.emplace();
    pump_.emplace(*connection_, log_);
}

} // namespace pelistra::testing
