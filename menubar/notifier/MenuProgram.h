#pragma once

#include "menubar/menu/MenuRequest.h"
#include "menubar/notifier/HelperProgram.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <poll.h>

namespace pelistra::menubar {

// The program that shows menus. It runs while a menu may be wanted, so that none has to wait for
// its start.
class MenuProgram {
public:
    using Clock = std::chrono::steady_clock;
    // It ends so long after the last sign that a menu may be wanted.
    static constexpr std::chrono::seconds quietTime{10};

    // Where and how large it shows menus.
    void setDisplay(const std::string& display, double scale);
    // The pointer has come to an icon with a menu.
    void prepare();
    // False when it cannot be told.
    [[nodiscard]] bool open(const MenuRequest& request);

    // What to wait for, and when process() is to be called although nothing came.
    [[nodiscard]] pollfd descriptor() const;
    [[nodiscard]] std::optional<Clock::time_point> due() const;
    void process();

private:
    HelperProgram program_;
    std::vector<std::string> environment_;
    Clock::time_point quietAt_;
};

} // namespace pelistra::menubar
