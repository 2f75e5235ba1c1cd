#include "menubar/notifier/MenuProgram.h"

#include <sys/socket.h>

namespace pelistra::menubar {

void MenuProgram::setDisplay(const std::string& display, double scale) {
    // Its font's size comes with the scale, not a second time with the resolution.
    std::vector<std::string> environment{"QT_QPA_PLATFORM=xcb", "QT_FONT_DPI=96",
                                         "QT_SCALE_FACTOR=" + std::to_string(scale)};
    if (!display.empty()) {
        environment.push_back("DISPLAY=" + display);
    }
    if (environment != environment_) {
        environment_ = std::move(environment);
        program_.close();
    }
}

void MenuProgram::prepare() {
    quietAt_ = Clock::now() + quietTime;
    if (!program_.isRunning()) {
        program_.start("pelistra-menubar-menu", environment_);
    }
}

bool MenuProgram::open(const MenuRequest& request) {
    prepare();
    if (program_.send(request.text())) {
        return true;
    }
    // It has ended since it was last looked at.
    program_.close();
    prepare();
    return program_.send(request.text());
}

pollfd MenuProgram::descriptor() const {
    return {.fd = program_.socket(), .events = POLLIN, .revents = 0};
}

std::optional<MenuProgram::Clock::time_point> MenuProgram::due() const {
    return program_.isRunning() ? std::optional(quietAt_) : std::nullopt;
}

void MenuProgram::process() {
    char byte = 0;
    const bool ended =
        program_.isRunning() && ::recv(program_.socket(), &byte, 1, MSG_DONTWAIT) == 0;
    if (ended || (program_.isRunning() && Clock::now() >= quietAt_)) {
        program_.close();
    }
}

} // namespace pelistra::menubar
