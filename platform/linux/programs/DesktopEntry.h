#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::linux {

// An application as its desktop entry describes it.
struct DesktopEntry {
    // The entry's id without ".desktop", for example "org.gnome.Terminal".
    std::string id;
    std::filesystem::path file;
    // In the user's language where the entry has it; presentable.
    std::string name;
    // A file by its whole path or a name in an icon theme; empty when it is neither.
    std::string icon;
    std::string exec;
    std::string tryExec;
    std::string workingFolder;
    std::string startupWmClass;
    bool terminal = false;
    bool dbusActivatable = false;
    // The user or the system has taken the entry away; it only hides others of its id.
    bool hidden = false;
    // Not meant for menus, but it still describes its program.
    bool noDisplay = false;
    // The user has switched it off as something to start at login.
    bool autostartIsOff = false;
    // The desktops that it is meant for (all, when empty) and not meant for.
    std::vector<std::string> onlyShowIn = {};
    std::vector<std::string> notShowIn = {};
};

// No entry is larger than this; a larger file is left out.
inline constexpr std::size_t desktopEntryByteLimit = std::size_t{256} * 1024;

// Reads the text of a desktop entry, its name in the language of the locale (empty: the user's).
// Empty when the text describes no application: another Type, or no Name, or a line that is no line
// of such a text.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                                            const std::string& locale = {});

// The program and its arguments that Exec asks for, without files: quoting undone, field codes
// replaced or dropped. Empty when Exec is missing or breaks the rules (an open quote, an unknown
// field code, no program).
[[nodiscard]] std::vector<std::string> commandOf(const DesktopEntry& entry);

// An argument as the value of Exec has it, quoted: commandOf() gives it back.
[[nodiscard]] std::string quotedForExec(std::string_view argument);

// The program of Exec alone, without its folder; empty when there is none.
[[nodiscard]] std::string programOf(const DesktopEntry& entry);

} // namespace pelistra::linux
