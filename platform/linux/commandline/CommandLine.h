#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pelistra::linux {

// The switches of the product; each counts as a whole argument, wherever it stands.
inline constexpr std::string_view showSettingsSwitch = "--show-settings";
inline constexpr std::string_view showOnboardingSwitch = "--show-onboarding";
inline constexpr std::string_view startCollapsedSwitch = "--start-collapsed";
inline constexpr std::string_view verifyLayoutSwitch = "--verify-section-layout";

// The switch of this system only, used at login.
inline constexpr std::string_view startMenuBarSwitch = "--start-menu-bar";

// The list of the tray's items, as a table or with the second switch as JSON.
inline constexpr std::string_view listItemsSwitch = "--list-items";
inline constexpr std::string_view jsonSwitch = "--json";

// What the command line asks for before anything else happens.
struct CommandLine {
    enum class Request { Run, Help, Version, ListItems, ListItemsAsJson, Refuse };

    Request request = Request::Run;
    // What to say for Help, Version and Refuse, line breaks included.
    std::string message;
};

// Reads the arguments, the program's path first. Asking for help or the version wins over
// everything else; the first argument that is no known option is refused by name, and so is
// "--json" where no list is asked for. A list starts nothing: the product's switches mean nothing
// beside it.
[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::string>& arguments,
                                           std::string_view version);

} // namespace pelistra::linux
