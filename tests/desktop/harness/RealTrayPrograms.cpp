#include "tests/desktop/harness/RealTrayPrograms.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace pelistra::testing {

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

const std::vector<RealTrayProgram>& realTrayPrograms() {
    static const std::vector<RealTrayProgram> programs{
        {.program = "parcellite", .toolkit = Toolkit::Gtk2, .className = "parcellite"},
        {.program = "qmidinet", .toolkit = Toolkit::Qt6, .className = "qmidinet"},
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

std::unique_ptr<ChildProcess> startTrayProgram(PrivateDisplay& display,
                                               const RealTrayProgram& program) {
    for (const SettingsFile& file : program.settings) {
        const std::filesystem::path path = display.folder() / file.path;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path) << file.content;
    }
    std::vector<std::string> command{program.program};
    command.insert(command.end(), program.arguments.begin(), program.arguments.end());
    return display.start(command);
}

} // namespace pelistra::testing
