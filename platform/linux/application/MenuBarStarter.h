#pragma once

#include "base/Lifetime.h"
#include "base/Logger.h"
#include "platform/MainQueue.h"

#include <filesystem>

namespace pelistra::linux {

class TrayHost;

// The menu bar's program: beside the given one, else by its name alone, to be found in PATH.
[[nodiscard]] std::filesystem::path menuBarBeside(const std::filesystem::path& program);

// Starts the menu bar's program when no system tray is there, as after a login on a desktop without
// one. The program lives on when this one ends.
class MenuBarStarter {
public:
    // How long a tray of the desktop's own has to appear.
    static constexpr Seconds patience{2.0};

    MenuBarStarter(const TrayHost& trayHost, MainQueue& mainQueue, LogSink& log);

    // Starts the program after `patience`, unless a tray is there by then.
    void startUnlessTrayComes(const std::filesystem::path& program);

private:
    void startNow(const std::filesystem::path& program);

    const TrayHost& trayHost_;
    MainQueue& mainQueue_;
    Logger logger_;
    Lifetime lifetime_;
};

} // namespace pelistra::linux
