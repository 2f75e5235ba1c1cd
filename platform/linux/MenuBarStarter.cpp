#include "platform/linux/MenuBarStarter.h"

#include "platform/linux/TrayHost.h"

#include <system_error>

#include <QProcess>
#include <QString>

namespace pelistra::desktop {

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
    if (QProcess::startDetached(QString::fromStdString(program.string()), {})) {
        logger_.info("No system tray is there: started " + program.string());
    } else {
        logger_.error("Cannot start " + program.string());
    }
}

} // namespace pelistra::desktop
