#include "platform/linux/settings/AutostartLoginItem.h"

#include "platform/linux/commandline/CommandLine.h"
#include "platform/linux/programs/DesktopEntry.h"
#include "platform/linux/programs/Launcher.h"
#include "platform/linux/settings/FileUserDefaults.h"
#include "platform/linux/settings/KeyFile.h"
#include "platform/posix/PrivateFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <initializer_list>
#include <sstream>
#include <system_error>
#include <utility>

namespace pelistra::linux {

namespace {

namespace fs = std::filesystem;

constexpr auto folderName = "autostart";
constexpr auto fileName = "pelistra.desktop";
constexpr auto unitName = "app-pelistra@autostart.service";

std::vector<std::string> parts(const char* variable, char separator, const char* fallback) {
    const char* value = std::getenv(variable);
    std::istringstream stream(value != nullptr && *value != '\0' ? value : fallback);
    std::vector<std::string> result;
    for (std::string part; std::getline(stream, part, separator);) {
        if (!part.empty()) {
            result.push_back(part);
        }
    }
    return result;
}

// Also true for a link that leads nowhere.
bool isThere(const fs::path& file) {
    std::error_code error;
    return fs::symlink_status(file, error).type() != fs::file_type::not_found;
}

bool isNullDevice(const fs::path& file) {
    std::error_code error;
    return fs::is_symlink(file, error) && fs::read_symlink(file, error) == "/dev/null";
}

// A link to a file elsewhere is written through; one that masks the entry is replaced.
fs::path writableTarget(const fs::path& file) {
    std::error_code error;
    const bool isLinkToFile = fs::is_symlink(file, error) && fs::is_regular_file(file, error);
    const fs::path target = isLinkToFile ? fs::canonical(file, error) : file;
    return error ? file : target;
}

std::optional<std::string> failure(const std::string& message) {
    return message.empty() ? std::nullopt : std::optional(message);
}

std::string messageOf(std::errc code) {
    return std::make_error_code(code).message();
}

} // namespace

AutostartPlaces AutostartPlaces::ofEnvironment() {
    // The defaults' file lies two levels below the user's configuration folder.
    const fs::path config = defaultsPath().parent_path().parent_path();
    AutostartPlaces places;
    places.userEntry = config / folderName / fileName;
    for (const std::string& folder : parts("XDG_CONFIG_DIRS", ':', "/etc/xdg")) {
        places.systemEntries.push_back(fs::path(folder) / folderName / fileName);
    }
    for (const fs::path& folder : {config / "systemd/user", fs::path("/etc/systemd/user")}) {
        places.unitMasks.push_back(folder / unitName);
    }
    places.desktops = parts("XDG_CURRENT_DESKTOP", ':', "");
    return places;
}

AutostartLoginItem::AutostartLoginItem(AutostartPlaces places, fs::path program)
    : places_(std::move(places)), program_(std::move(program)) {}

LoginItemStatus AutostartLoginItem::status() const {
    // The first file of the name counts, whatever is in it.
    if (isThere(places_.userEntry)) {
        return statusOfFile(places_.userEntry);
    }
    const auto found = std::ranges::find_if(places_.systemEntries, isThere);
    return found != places_.systemEntries.end() ? statusOfFile(*found)
                                                : LoginItemStatus::NotRegistered;
}

LoginItemStatus AutostartLoginItem::statusOfFile(const fs::path& file) const {
    const auto text = posix::readFile(file, desktopEntryByteLimit);
    const auto entry = text ? parseDesktopEntry(*text) : std::nullopt;
    return entry ? statusOfEntry(*entry) : LoginItemStatus::NotRegistered;
}

LoginItemStatus AutostartLoginItem::statusOfEntry(const DesktopEntry& entry) const {
    const auto command = commandOf(entry);
    const auto isOurs = [this](const std::string& word) {
        return word.find(program_.filename().string()) != std::string::npos;
    };
    if (entry.hidden || std::ranges::none_of(command, isOurs)) {
        return LoginItemStatus::NotRegistered;
    }
    if (!findProgram(command.front()) || (!entry.tryExec.empty() && !findProgram(entry.tryExec))) {
        return LoginItemStatus::NotFound;
    }
    if (entry.autostartIsOff || !isForThisDesktop(entry) || isMasked()) {
        return LoginItemStatus::RequiresApproval;
    }
    return LoginItemStatus::Enabled;
}

bool AutostartLoginItem::isForThisDesktop(const DesktopEntry& entry) const {
    const auto names = [this](const std::vector<std::string>& listed) {
        return std::ranges::any_of(listed, [this](const std::string& name) {
            return std::ranges::find(places_.desktops, name) != places_.desktops.end();
        });
    };
    return (entry.onlyShowIn.empty() || names(entry.onlyShowIn)) && !names(entry.notShowIn);
}

bool AutostartLoginItem::isMasked() const {
    return std::ranges::any_of(places_.unitMasks, isNullDevice);
}

bool AutostartLoginItem::systemHasEntry() const {
    return std::ranges::any_of(places_.systemEntries, isThere);
}

std::string AutostartLoginItem::entryText() const {
    const std::string command =
        quotedForExec(program_.string()) + " " + std::string(startMenuBarSwitch);
    KeyFile entry;
    for (const auto& [key, value] : std::initializer_list<std::pair<const char*, std::string>>{
             {"Type", "Application"},
             {"Version", "1.0"},
             {"Name", "Pelistra"},
             {"Comment", "Hide the menu bar's icons that you rarely need behind an arrow"},
             {"Comment[zh_CN]", "把不常用的菜单栏图标收到箭头后面"},
             {"Exec", command},
             {"Icon", "pelistra"},
             {"Terminal", "false"},
             {"StartupNotify", "false"},
             {"X-GNOME-Autostart-enabled", "true"}}) {
        entry.setText("Desktop Entry", key, value);
    }
    return entry.wholeText();
}

std::optional<std::string> AutostartLoginItem::registerItem() {
    if (status() == LoginItemStatus::Enabled) {
        return std::nullopt;
    }
    if (auto reason = posix::writeFileAtomically(writableTarget(places_.userEntry), entryText());
        !reason.empty()) {
        return reason;
    }
    switch (status()) {
    case LoginItemStatus::Enabled:
        return std::nullopt;
    case LoginItemStatus::NotFound:
        return messageOf(std::errc::no_such_file_or_directory);
    default:
        return messageOf(std::errc::operation_not_permitted);
    }
}

std::optional<std::string> AutostartLoginItem::unregisterItem() {
    if (systemHasEntry()) {
        // Without an entry of the user's, the system's would count.
        return failure(posix::writeFileAtomically(
            writableTarget(places_.userEntry),
            "[Desktop Entry]\nType=Application\nName=Pelistra\nHidden=true\n"));
    }
    if (::unlink(places_.userEntry.c_str()) != 0 && errno != ENOENT) {
        return std::generic_category().message(errno);
    }
    return std::nullopt;
}

} // namespace pelistra::linux
