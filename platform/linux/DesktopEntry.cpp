#include "platform/linux/DesktopEntry.h"

#include "platform/linux/TrayLookText.h"

#include <algorithm>
#include <map>
#include <utility>

namespace pelistra::desktop {

namespace {

constexpr std::string_view spaces = " \t\r";

using Keys = std::map<std::string, std::string, std::less<>>;

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(spaces);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(spaces) - begin + 1);
}

std::string unescaped(std::string_view value) {
    std::string result;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '\\' || i + 1 == value.size()) {
            result += value[i];
            continue;
        }
        ++i;
        switch (value[i]) {
        case 's':
            result += ' ';
            break;
        case 'n':
            result += '\n';
            break;
        case 't':
            result += '\t';
            break;
        case 'r':
            result += '\r';
            break;
        case '\\':
            result += '\\';
            break;
        default:
            // Not an escape of this level: Exec has escapes of its own.
            result += '\\';
            result += value[i];
        }
    }
    return result;
}

bool isKeyCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
}

bool isKey(std::string_view key) {
    const std::string_view name = key.substr(0, key.find('['));
    const bool localeIsClosed = name.size() == key.size() || key.back() == ']';
    return !name.empty() && localeIsClosed && std::ranges::all_of(name, isKeyCharacter);
}

void addLine(Keys& keys, std::string_view line) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
        return;
    }
    const std::string_view key = trimmed(line.substr(0, equals));
    if (isKey(key)) {
        keys.try_emplace(std::string(key), unescaped(trimmed(line.substr(equals + 1))));
    }
}

Keys keysOfEntry(std::string_view text) {
    Keys keys;
    bool inEntry = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (line.front() == '[') {
            inEntry = line == "[Desktop Entry]";
        } else if (inEntry) {
            addLine(keys, line);
        }
    }
    return keys;
}

std::string valueOf(const Keys& keys, std::string_view key) {
    const auto found = keys.find(key);
    return found == keys.end() ? std::string() : found->second;
}

std::string localised(const Keys& keys, const std::string& key,
                      const std::vector<std::string>& locales) {
    for (const std::string& locale : locales) {
        if (const auto found = keys.find(std::string(key).append("[").append(locale).append("]"));
            found != keys.end() && !found->second.empty()) {
            return found->second;
        }
    }
    return valueOf(keys, key);
}

// A file by its whole path or a name in a theme. Anything else would lead through folders that
// nobody has named, or is no name at all.
std::string usableIcon(std::string icon) {
    const bool isPlace = icon.starts_with('/') || icon.find('/') == std::string::npos;
    return isPlace && presentableText(icon, icon.size()) == icon ? std::move(icon) : std::string();
}

// The texts of a list, which ends each of them with a semicolon.
std::vector<std::string> listOf(const Keys& keys, std::string_view key) {
    std::vector<std::string> texts;
    const std::string list = valueOf(keys, key);
    for (std::size_t begin = 0; begin < list.size();) {
        const std::size_t end = std::min(list.find(';', begin), list.size());
        if (end > begin) {
            texts.push_back(list.substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return texts;
}

// One argument of Exec as it was written.
struct Argument {
    std::string text;
    bool wasQuoted = false;
};

constexpr std::string_view escapedInQuotes = "\"`$\\";

// Reads a quoted part that begins behind its opening quote; the place behind the closing one, or
// npos when there is none.
std::size_t readQuoted(std::string_view exec, std::size_t at, std::string& text) {
    while (at < exec.size() && exec[at] != '"') {
        const bool isEscape = exec[at] == '\\' && at + 1 < exec.size() &&
                              escapedInQuotes.find(exec[at + 1]) != std::string_view::npos;
        at += isEscape ? 1 : 0;
        text += exec[at];
        ++at;
    }
    return at < exec.size() ? at + 1 : std::string_view::npos;
}

std::optional<std::vector<Argument>> split(std::string_view exec) {
    std::vector<Argument> arguments;
    std::size_t at = 0;
    while ((at = exec.find_first_not_of(" \t\n", at)) != std::string_view::npos) {
        Argument argument;
        while (at < exec.size() && exec[at] != ' ' && exec[at] != '\t' && exec[at] != '\n') {
            if (exec[at] != '"') {
                argument.text += exec[at++];
                continue;
            }
            argument.wasQuoted = true;
            at = readQuoted(exec, at + 1, argument.text);
            if (at == std::string_view::npos) {
                return std::nullopt;
            }
        }
        arguments.push_back(std::move(argument));
    }
    return arguments;
}

// The text of an argument with its field codes replaced; empty optional for an unknown code.
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

std::string withSinglePercents(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        result += text[i];
        i += text.substr(i).starts_with("%%") ? 1 : 0;
    }
    return result;
}

// Appends what an argument becomes; false when it breaks the rules.
bool append(std::vector<std::string>& command, const Argument& argument,
            const DesktopEntry& entry) {
    if (argument.wasQuoted) {
        // Field codes have no meaning inside quotes, but a percent sign is doubled there too.
        command.push_back(withSinglePercents(argument.text));
        return true;
    }
    if (argument.text == "%i") {
        if (!entry.icon.empty()) {
            command.insert(command.end(), {"--icon", entry.icon});
        }
        return true;
    }
    auto text = expanded(argument.text, entry);
    if (!text) {
        return false;
    }
    if (!text->empty()) {
        command.push_back(*std::move(text));
    }
    return true;
}

} // namespace

std::vector<std::string> localeKeys(std::string_view locale) {
    if (locale.empty() || locale == "C" || locale == "POSIX" || locale.starts_with("C.")) {
        return {};
    }
    const std::size_t modifierAt = locale.find('@');
    const std::string modifier(modifierAt == std::string_view::npos ? std::string_view()
                                                                    : locale.substr(modifierAt));
    std::string_view base = locale.substr(0, modifierAt);
    base = base.substr(0, base.find('.'));
    const std::string language(base.substr(0, base.find('_')));
    std::vector<std::string> keys;
    for (const std::string& stem : {std::string(base), language}) {
        if (!modifier.empty()) {
            keys.push_back(stem + modifier);
        }
        keys.push_back(stem);
    }
    const auto repeated = std::ranges::unique(keys);
    keys.erase(repeated.begin(), repeated.end());
    return keys;
}

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                              const std::vector<std::string>& locales) {
    if (text.find('\0') != std::string_view::npos) {
        // No text. What is read of it and what is executed could be two things.
        return std::nullopt;
    }
    const Keys keys = keysOfEntry(text);
    const auto isTrue = [&](std::string_view key) { return valueOf(keys, key) == "true"; };
    DesktopEntry entry;
    entry.name = presentableText(localised(keys, "Name", locales));
    entry.icon = usableIcon(localised(keys, "Icon", locales));
    entry.exec = valueOf(keys, "Exec");
    entry.tryExec = valueOf(keys, "TryExec");
    entry.workingFolder = valueOf(keys, "Path");
    entry.startupWmClass = valueOf(keys, "StartupWMClass");
    entry.terminal = isTrue("Terminal");
    entry.dbusActivatable = isTrue("DBusActivatable");
    entry.hidden = isTrue("Hidden");
    entry.noDisplay = isTrue("NoDisplay");
    entry.autostartIsOff = valueOf(keys, "X-GNOME-Autostart-enabled") == "false" ||
                           valueOf(keys, "X-MATE-Autostart-enabled") == "false";
    entry.onlyShowIn = listOf(keys, "OnlyShowIn");
    entry.notShowIn = listOf(keys, "NotShowIn");
    if (!entry.hidden && (valueOf(keys, "Type") != "Application" || entry.name.empty())) {
        return std::nullopt;
    }
    return entry;
}

std::vector<std::string> commandOf(const DesktopEntry& entry) {
    const auto arguments = split(entry.exec);
    if (!arguments) {
        return {};
    }
    std::vector<std::string> command;
    for (const Argument& argument : *arguments) {
        if (!append(command, argument, entry)) {
            return {};
        }
    }
    const bool hasProgram = !command.empty() && !command.front().empty() &&
                            command.front().find('=') == std::string::npos;
    return hasProgram ? command : std::vector<std::string>{};
}

std::string quotedForExec(std::string_view argument) {
    std::string result = "\"";
    for (const char c : argument) {
        switch (c) {
        case '"':
        case '`':
        case '$':
            // A backslash for the quotes, written as a value's backslash.
            result += "\\\\";
            result += c;
            break;
        case '\\':
            result += R"(\\\\)";
            break;
        case '%':
            result += "%%";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\t':
            result += "\\t";
            break;
        case '\r':
            result += "\\r";
            break;
        default:
            result += c;
        }
    }
    return result + "\"";
}

std::string programOf(const DesktopEntry& entry) {
    const auto arguments = split(entry.exec);
    if (!arguments || arguments->empty()) {
        return {};
    }
    return std::filesystem::path(arguments->front().text).filename().string();
}

} // namespace pelistra::desktop
