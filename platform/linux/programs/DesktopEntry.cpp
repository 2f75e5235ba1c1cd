#include "platform/linux/programs/DesktopEntry.h"

#include "platform/linux/icons/PresentableText.h"
#include "platform/linux/settings/KeyFile.h"

#include <memory>
#include <utility>

#include <glib.h>

namespace pelistra::linux {

namespace {

constexpr const char* entryGroup = "Desktop Entry";

// A file by its whole path or a name in a theme. Anything else would lead through folders that
// nobody has named, or is no name at all.
std::string usableIcon(std::string icon) {
    const bool isPlace = icon.starts_with('/') || icon.find('/') == std::string::npos;
    return isPlace && presentableText(icon, icon.size()) == icon ? std::move(icon) : std::string();
}

// The words of Exec, their quotes undone; none when it breaks the rules. No shell: what others
// would mean to a shell stays as it is.
std::vector<std::string> wordsOf(const std::string& exec) {
    int count = 0;
    char** words = nullptr;
    if (g_shell_parse_argv(exec.c_str(), &count, &words, nullptr) == FALSE) {
        return {};
    }
    const std::unique_ptr<char*, decltype(&g_strfreev)> owner(words, g_strfreev);
    return {words, words + count};
}

// The text of a word with its field codes replaced; empty optional for an unknown code.
std::optional<std::string> expanded(const std::string& text, const DesktopEntry& entry) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        if (++i == text.size()) {
            return std::nullopt;
        }
        constexpr std::string_view dropped = "fFuUdDnNvm";
        switch (text[i]) {
        case '%':
            result += '%';
            break;
        case 'c':
            result += entry.name;
            break;
        case 'k':
            result += entry.file.string();
            break;
        default:
            if (dropped.find(text[i]) == std::string_view::npos) {
                return std::nullopt;
            }
        }
    }
    return result;
}

// Appends what a word becomes; false when it breaks the rules.
bool append(std::vector<std::string>& command, const std::string& word, const DesktopEntry& entry) {
    if (word == "%i") {
        if (!entry.icon.empty()) {
            command.insert(command.end(), {"--icon", entry.icon});
        }
        return true;
    }
    auto text = expanded(word, entry);
    if (text && (!text->empty() || word.empty())) {
        command.push_back(*text);
    }
    return text.has_value();
}

} // namespace

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, const std::string& locale) {
    std::string fault;
    const auto keys = KeyFile::parse(text, fault);
    if (!keys) {
        return std::nullopt;
    }
    const auto isTrue = [&](const char* key) { return keys->text(entryGroup, key) == "true"; };
    DesktopEntry entry;
    entry.name = presentableText(keys->localText(entryGroup, "Name", locale));
    entry.icon = usableIcon(keys->localText(entryGroup, "Icon", locale));
    entry.exec = keys->text(entryGroup, "Exec");
    entry.tryExec = keys->text(entryGroup, "TryExec");
    entry.workingFolder = keys->text(entryGroup, "Path");
    entry.startupWmClass = keys->text(entryGroup, "StartupWMClass");
    entry.terminal = isTrue("Terminal");
    entry.dbusActivatable = isTrue("DBusActivatable");
    entry.hidden = isTrue("Hidden");
    entry.noDisplay = isTrue("NoDisplay");
    entry.autostartIsOff = keys->text(entryGroup, "X-GNOME-Autostart-enabled") == "false" ||
                           keys->text(entryGroup, "X-MATE-Autostart-enabled") == "false";
    entry.onlyShowIn = keys->list(entryGroup, "OnlyShowIn");
    entry.notShowIn = keys->list(entryGroup, "NotShowIn");
    if (!entry.hidden && (keys->text(entryGroup, "Type") != "Application" || entry.name.empty())) {
        return std::nullopt;
    }
    return entry;
}

std::vector<std::string> commandOf(const DesktopEntry& entry) {
    std::vector<std::string> command;
    for (const std::string& word : wordsOf(entry.exec)) {
        if (!append(command, word, entry)) {
            return {};
        }
    }
    const bool hasProgram = !command.empty() && !command.front().empty() &&
                            command.front().find('=') == std::string::npos;
    return hasProgram ? command : std::vector<std::string>{};
}

// g_shell_quote uses apostrophes, which other readers of desktop entries do not know.
std::string quotedForExec(std::string_view argument) {
    constexpr std::string_view escaped = "\"`$\\";
    std::string result = "\"";
    for (const char c : argument) {
        if (escaped.find(c) != std::string_view::npos) {
            result += '\\';
        } else if (c == '%') {
            result += '%';
        }
        result += c;
    }
    return result + '"';
}

std::string programOf(const DesktopEntry& entry) {
    const auto words = wordsOf(entry.exec);
    return words.empty() ? "" : std::filesystem::path(words.front()).filename().string();
}

} // namespace pelistra::linux
