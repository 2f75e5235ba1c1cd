#pragma once

#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/XClient.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::testing {

// A file that a program needs before it starts.
struct SettingsFile {
    // Below the display's folder: home/, config/ ($XDG_CONFIG_HOME), data/ ...
    std::string path;
    std::string content;
};

// A tray program from Debian, and how it is started so that it shows its icon on a bare X server.
struct RealTrayProgram {
    std::string program;
    // With its version, where that is the same on every Debian.
    std::string toolkit;
    std::vector<std::string> arguments = {};
    std::vector<SettingsFile> settings = {};
    // WM_CLASS class of its docked window.
    std::string className;
};

void writeSettings(const PrivateDisplay& display, const std::vector<SettingsFile>& files);

void PrintTo(const RealTrayProgram& program, std::ostream* stream);

// All that are known to run on a bare Xvfb with a session bus: at least one of every toolkit.
[[nodiscard]] const std::vector<RealTrayProgram>& realTrayPrograms();
// The one with that name; throws std::out_of_range for any other.
[[nodiscard]] const RealTrayProgram& realTrayProgram(std::string_view program);

// Writes its settings and starts it. Waiting for the icon is the caller's.
[[nodiscard]] std::unique_ptr<ChildProcess> startTrayProgram(PrivateDisplay& display,
                                                             const RealTrayProgram& program);

} // namespace pelistra::testing
