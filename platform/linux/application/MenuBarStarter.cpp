#include "platform/linux/application/MenuBarStarter.h"

#include "platform/linux/statusitem/TrayHost.h"

#include <array>
#include <memory>
#include <string>
#include <system_error>

#include <glib.h>

namespace pelistra::linux {

namespace {

constexpr auto programName = "pelistra-menubar";

} // namespace

std::filesystem::path menuBarBeside(const std::filesystem::path& program) {
    auto neighbour = program.parent_path() / programName;
    std::error_code error;
    return std::filesystem::is_regular_file(neighbour, error) ? neighbour
                                                              : std::filesystem::path(programName);
}

MenuBarStarter::MenuBarStarter(const TrayHost& trayHost, MainQueue& mainQueue, LogSink& log)
    : trayHost_(trayHost), mainQueue_(mainQueue), logger_(log, "menu-bar") {}

void MenuBarStarter::startUnlessTrayComes(const std::filesystem::path& program) {
    mainQueue_.asyncAfter(patience, lifetime_.guard([this, program] {
        if (!trayHost_.tray()) {
            startNow(program);
        }
    }));
}

void MenuBarStarter::startNow(const std::filesystem::path& program) {
    std::string name = program.string();
    std::array<char*, 2> command{name.data(), nullptr};
    GError* error = nullptr;
    if (g_spawn_async(nullptr, command.data(), nullptr, G_SPAWN_SEARCH_PATH, nullptr, nullptr,
                      nullptr, &error) != FALSE) {
        logger_.info("No system tray is there: started " + name);
        return;
    }
    const std::unique_ptr<GError, decltype(&g_error_free)> owned(error, g_error_free);
    logger_.error("Cannot start " + name + ": " + owned->message);
}

} // namespace pelistra::linux
