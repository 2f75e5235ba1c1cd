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

void PrintTo(const RealTrayProgram& program, std::ostream* stream) {
    *stream << program.program << " (" << program.toolkit << ")";
}

const std::vector<RealTrayProgram>& realTrayPrograms() {
    static const std::vector<RealTrayProgram> programs{
        {.program = "nabi",
         .toolkit = "GTK 2",
         .arguments = {"--status-only"},
         .className = "Nabi"},
        {.program = "volumeicon", .toolkit = "GTK 3", .className = "Volumeicon"},
        {.program = "pnmixer", .toolkit = "GTK 3", .className = "Pnmixer"},
        {.program = "xfce4-clipman", .toolkit = "GTK 3", .className = "Xfce4-clipman"},
        {.program = "qlipper", .toolkit = "Qt 5", .className = "qlipper"},
        {.program = "copyq", .toolkit = "Qt", .className = "copyq"},
        {.program = "qmidinet",
         .toolkit = "Qt 6",
         .settings = {{.path = "config/rncbc.org/QmidiNet.conf", .content = showInTray}},
         .className = "QmidiNet"},
    };
    return programs;
}

const RealTrayProgram& realTrayProgram(std::string_view program) {
    const auto& programs = realTrayPrograms();
    const auto found = std::ranges::find(programs, program, &RealTrayProgram::program);
    if (found == programs.end()) {
        throw std::out_of_range("no tray program " + std::string(program));
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
