#include "platform/linux/QtApplication.h"

#include "platform/linux/XcbScreens.h"

#include <utility>

#include <QApplication>
#include <unistd.h>

namespace pelistra::desktop {

QtApplication::QtApplication(x11::Connection& connection, const XcbScreens& screens,
                             std::vector<std::string> arguments)
    : connection_(connection), screens_(screens), arguments_(std::move(arguments)),
      loop_(g_main_loop_new(nullptr, FALSE), g_main_loop_unref) {}

void QtApplication::setActivationPolicy(ActivationPolicy /*policy*/) {
    QGuiApplication::setQuitOnLastWindowClosed(false);
}

// A window that is shown is active and in front of all others already. On X11 an application is not
// more than its windows: to raise the others as well would put one of them above that one.
void QtApplication::activateIgnoringOtherApps() {}

void QtApplication::terminate() {
    g_main_loop_quit(loop_.get());
}

void QtApplication::run() {
    g_main_loop_run(loop_.get());
}

std::optional<std::string> QtApplication::infoText(std::string_view key) const {
    if (key == "CFBundleShortVersionString") {
        return PELISTRA_VERSION;
    }
    if (key == "CFBundleName") {
        return "Pelistra";
    }
    if (key == "CFBundleIdentifier") {
        return "com.pelistra.app";
    }
    return std::nullopt;
}

ProcessId QtApplication::processIdentifier() const {
    return ::getpid();
}

ScreenPoint QtApplication::mouseLocation() const {
    const auto pointer = connection_.take<xcb_query_pointer_reply_t>(
        xcb_query_pointer(connection_.get(), connection_.root()));
    if (pointer) {
        lastMouseLocation_ = screens_.coordinates().toScreen(pointer->root_x, pointer->root_y);
    }
    return lastMouseLocation_;
}

void QtApplication::handleEvent(const Event& event, const std::function<void()>& block) {
    const auto outer = std::exchange(currentEvent_, event);
    block();
    currentEvent_ = outer;
}

} // namespace pelistra::desktop
