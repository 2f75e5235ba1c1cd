#pragma once

#include "platform/LoginItem.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::linux {

struct DesktopEntry;

// Where the desktop looks for what it starts at login.
struct AutostartPlaces {
    // $XDG_CONFIG_HOME/autostart/pelistra.desktop.
    std::filesystem::path userEntry;
    // The same file in the folders of XDG_CONFIG_DIRS, the most important one first. The user's
    // entry takes their place.
    std::vector<std::filesystem::path> systemEntries;
    // Where the user or the system may mask the unit that a service manager makes of the entry.
    std::vector<std::filesystem::path> unitMasks;
    // The desktop's names, from XDG_CURRENT_DESKTOP.
    std::vector<std::string> desktops;

    // As the environment says.
    [[nodiscard]] static AutostartPlaces ofEnvironment();
};

// The registration as an XDG autostart entry. What others write there counts: an entry that is
// hidden, masked or no entry at all is none, one that is switched off, meant for other desktops or
// held back by the service manager is there but not enabled.
class AutostartLoginItem final : public LoginItem {
public:
    // `program` is what is started at login, with --start-menu-bar.
    AutostartLoginItem(AutostartPlaces places, std::filesystem::path program);

    // NotFound when the entry's program is not there.
    [[nodiscard]] LoginItemStatus status() const override;
    // Leaves an enabled entry as it is, so that what the user has changed in it stays.
    [[nodiscard]] std::optional<std::string> registerItem() override;
    [[nodiscard]] std::optional<std::string> unregisterItem() override;

private:
    [[nodiscard]] LoginItemStatus statusOfFile(const std::filesystem::path& file) const;
    [[nodiscard]] LoginItemStatus statusOfEntry(const DesktopEntry& entry) const;
    [[nodiscard]] bool isForThisDesktop(const DesktopEntry& entry) const;
    [[nodiscard]] bool isMasked() const;
    [[nodiscard]] bool systemHasEntry() const;
    [[nodiscard]] std::string entryText() const;

    AutostartPlaces places_;
    std::filesystem::path program_;
};

} // namespace pelistra::linux
