#include "tests/desktop/harness/RealTrayPrograms.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <stdexcept>

namespace pelistra::testing {

namespace {

constexpr const char* showInTray = "[Options]\nSystemTray=true\nStartMinimized=true\n";

} // namespace

const char* nameOf(Toolkit toolkit) {
    switch (toolkit) {
    case Toolkit::Gtk2:
        return "GTK 2";
    case Toolkit::Gtk3:
        return "GTK 3";
    case Toolkit::Qt5:
        return "Qt 5";
    case Toolkit::Qt6:
        return "Qt 6";
    }
    return "";
}

void PrintTo(const RealTrayProgram& program, std::ostream* stream) {
    *stream << program.program << " (" << nameOf(program.toolkit) << ")";
}

const std::vector<RealTrayProgram>& realTrayPrograms() {
    static const std::vector<RealTrayProgram> programs{
        {.program = "nabi",
         .toolkit = Toolkit::Gtk2,
         .arguments = {"--status-only"},
         .className = "Nabi"},
        {.program = "volumeicon", .toolkit = Toolkit::Gtk3, .className = "Volumeicon"},
        {.program = "pnmixer", .toolkit = Toolkit::Gtk3, .className = "Pnmixer"},
        {.program = "xfce4-clipman", .toolkit = Toolkit::Gtk3, .className = "Xfce4-clipman"},
        {.program = "qlipper", .toolkit = Toolkit::Qt5, .className = "qlipper"},
        {.program = "copyq", .toolkit = Toolkit::Qt5, .className = "copyq"},
        {.program = "qmidinet",
         .toolkit = Toolkit::Qt6,
         .settings = {{.path = "config/rncbc.org/QmidiNet.conf", .content = showInTray}},
         .className = "QmidiNet"},
    };
    return programs;
}

const RealTrayProgram& realTrayProgram(const std::string& program) {
    const auto& programs = realTrayPrograms();
    const auto found = std::ranges::find(programs, program, &RealTrayProgram::program);
    if (found == programs.end()) {
        throw std::out_of_range("no tray program " + program);
    }
    return *found;
}

void writeSettings(const PrivateDisplay& display, const std::vector<SettingsFile>& files) {
    for (const SettingsFile& file : files) {
        const std::filesystem::path path = display.folder() / file.path;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << file.content;
    }
}

std::unique_ptr<ChildProcess> startTrayProgram(PrivateDisplay& display,
                                               const RealTrayProgram& program) {
    writeSettings(display, program.settings);
    std::vector<std::string> command{program.program};
    command.insert(command.end(), program.arguments.begin(), program.arguments.end());
    return display.start(command);
}

} // namespace pelistra::testing
