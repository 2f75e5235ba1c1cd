#include "platform/linux/CommandLine.h"

#include "platform/linux/LogLine.h"

#include <algorithm>
#include <array>
#include <span>

namespace pelistra::desktop {

namespace {

constexpr std::array productSwitches{showSettingsSwitch, showOnboardingSwitch, startCollapsedSwitch,
                                     verifyLayoutSwitch, startMenuBarSwitch};

constexpr auto help = R"(Usage: pelistra [OPTION]...
Hide the icons of the menu bar that you rarely need behind an arrow.

  --show-settings          open the settings window
  --show-onboarding        open the introduction
  --start-collapsed        hide the section left of the divider right away
  --verify-section-layout  collapse, measure and expand once; the result is logged
  --start-menu-bar         start pelistra-menubar too when no system tray is there
  --help                   show this help and end
  --version                show the version and end

A second start hands --show-settings and --show-onboarding to the running one.
)";

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments, std::string_view version) {
    const auto options = std::span(arguments).subspan(std::min<std::size_t>(1, arguments.size()));
    if (std::ranges::find(options, "--help") != options.end()) {
        return {.request = CommandLine::Request::Help, .message = help};
    }
    if (std::ranges::find(options, "--version") != options.end()) {
        return {.request = CommandLine::Request::Version,
                .message = "pelistra " + std::string(version) + "\n"};
    }
    const auto unknown = std::ranges::find_if(options, [](const std::string& option) {
        return std::ranges::find(productSwitches, option) == productSwitches.end();
    });
    if (unknown != options.end()) {
        return {.request = CommandLine::Request::Refuse,
                .message = "pelistra: unknown option '" + withoutControlCharacters(*unknown) +
                           "'\nTry 'pelistra --help'.\n"};
    }
    return {};
}

} // namespace pelistra::desktop
