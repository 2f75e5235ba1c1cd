#pragma once

#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/RealTrayPrograms.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace pelistra::testing {

// A tray from Debian that is not ours, at the top of the screen.
struct OtherTray {
    std::string name;
    std::vector<std::string> command;
    std::vector<SettingsFile> settings = {};
};

void PrintTo(const OtherTray& tray, std::ostream* stream);

// One that is a single program, and one whose tray is a program of its own inside the panel's
// window.
[[nodiscard]] const std::vector<OtherTray>& otherTrays();

// What makes xfce4-panel one panel at the top with nothing but its tray, which shows all icons or
// hides every one behind its button.
enum class XfceIcons : std::uint8_t { Shown, Hidden };
[[nodiscard]] SettingsFile xfcePanelSettings(XfceIcons icons);

// Writes its settings and starts it; the display needs a session bus. Waiting for the tray is the
// caller's.
[[nodiscard]] std::unique_ptr<ChildProcess> startOtherTray(PrivateDisplay& display,
                                                           const OtherTray& tray);

} // namespace pelistra::testing
