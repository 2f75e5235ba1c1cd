#include "platform/linux/application/X11Application.h"

#include "platform/linux/screens/X11Screens.h"

#include <utility>

#include <unistd.h>

namespace pelistra::linux {

X11Application::X11Application(x11::Connection& connection, const X11Screens& screens,
                               std::vector<std::string> arguments)
    : connection_(connection), screens_(screens), arguments_(std::move(arguments)),
      loop_(g_main_loop_new(nullptr, FALSE), g_main_loop_unref) {}

void X11Application::terminate() {
    g_main_loop_quit(loop_.get());
}

void X11Application::run() {
    g_main_loop_run(loop_.get());
}

std::optional<std::string> X11Application::infoText(std::string_view key) const {
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

ProcessId X11Application::processIdentifier() const {
    return ::getpid();
}

ScreenPoint X11Application::mouseLocation() const {
    const auto pointer = connection_.take<xcb_query_pointer_reply_t>(
        xcb_query_pointer(connection_.get(), connection_.root()));
    if (pointer) {
        lastMouseLocation_ = screens_.coordinates().toScreen(pointer->root_x, pointer->root_y);
    }
    return lastMouseLocation_;
}

void X11Application::handleEvent(const Event& event, const std::function<void()>& block) {
    const auto outer = std::exchange(currentEvent_, event);
    block();
    currentEvent_ = outer;
}

} // namespace pelistra::linux
