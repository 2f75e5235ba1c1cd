#include "platform/linux/commandline/CommandLine.h"

#include "platform/linux/application/LogLine.h"
#include "platform/posix/Translation.h"

#include <algorithm>
#include <array>
#include <span>

namespace pelistra::linux {

namespace {

// Whole arguments, wherever they stand, are what the core looks for; getopt_long() and GOption
// would take abbreviations or values apart, and accept what then does nothing.
constexpr std::array knownSwitches{showSettingsSwitch, showOnboardingSwitch, startCollapsedSwitch,
                                   verifyLayoutSwitch, startMenuBarSwitch,   listItemsSwitch,
                                   jsonSwitch};

std::string help() {
    return posix::translated(R"(Usage: pelistra [OPTION]...
Hide the icons of the menu bar that you rarely need behind an arrow.

  --show-settings          open the settings window
  --show-onboarding        open the introduction
  --start-collapsed        hide the section left of the divider right away
  --verify-section-layout  collapse, measure and expand once; the result is logged
  --start-menu-bar         start pelistra-menubar too when no system tray is there
  --list-items             print what stands in the tray and end; needs no running organiser
  --json                   with --list-items: as JSON
  -h, --help               show this help and end
  --version                show the version and end

A second start hands --show-settings and --show-onboarding to the running one.
)");
}

CommandLine refusal(const std::string& complaint) {
    return {.request = CommandLine::Request::Refuse,
            .message = "pelistra: " + complaint + "\n" +
                       posix::translated("Try 'pelistra --help'.") + "\n"};
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& arguments, std::string_view version) {
    const auto options = std::span(arguments).subspan(std::min<std::size_t>(1, arguments.size()));
    const auto has = [options](std::string_view option) {
        return std::ranges::find(options, option) != options.end();
    };
    if (has("--help") || has("-h")) {
        return {.request = CommandLine::Request::Help, .message = help()};
    }
    if (has("--version")) {
        return {.request = CommandLine::Request::Version,
                .message = "pelistra " + std::string(version) + "\n"};
    }
    const auto unknown = std::ranges::find_if(options, [](const std::string& option) {
        return std::ranges::find(knownSwitches, option) == knownSwitches.end();
    });
    if (unknown != options.end()) {
        return refusal(
            posix::translated("unknown option '%1'", {withoutControlCharacters(*unknown)}));
    }
    if (has(listItemsSwitch)) {
        return {.request = has(jsonSwitch) ? CommandLine::Request::ListItemsAsJson
                                           : CommandLine::Request::ListItems,
                .message = {}};
    }
    if (has(jsonSwitch)) {
        return refusal(posix::translated("'--json' belongs to '--list-items'"));
    }
    return {};
}

} // namespace pelistra::linux
