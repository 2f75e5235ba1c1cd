#include "platform/linux/settings/FirstDefaultsForm.h"

#include <algorithm>
#include <string>
#include <utility>

namespace pelistra::linux {

namespace {

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

// Takes a quoted text with its escapes off the front.
std::optional<std::string> takeQuoted(std::string_view& rest) {
    if (!rest.starts_with('"')) {
        return std::nullopt;
    }
    std::string result;
    for (std::size_t i = 1; i < rest.size(); ++i) {
        if (rest[i] == '"') {
            rest.remove_prefix(i + 1);
            return result;
        }
        if (rest[i] != '\\') {
            result += rest[i];
        } else if (++i < rest.size()) {
            result += rest[i] == 'n' ? '\n' : rest[i] == 't' ? '\t' : rest[i];
        }
    }
    return std::nullopt;
}

// The key and the value of a line.
std::optional<std::pair<std::string, std::string>> entryIn(std::string_view line) {
    auto key = takeQuoted(line);
    line = trimmed(line);
    if (!key || !line.starts_with('=')) {
        return std::nullopt;
    }
    line = trimmed(line.substr(1));
    if (!line.starts_with('"')) {
        return std::pair{*std::move(key), std::string(line)};
    }
    auto value = takeQuoted(line);
    if (!value || !line.empty()) {
        return std::nullopt;
    }
    return std::pair{*std::move(key), *std::move(value)};
}

} // namespace

std::optional<KeyFile> fromFirstDefaultsForm(std::string_view text, const char* group) {
    if (text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    std::optional<KeyFile> result;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = trimmed(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.empty() || line.starts_with('#')) {
            continue;
        }
        const auto entry = entryIn(line);
        if (!entry) {
            return std::nullopt;
        }
        if (!result) {
            result.emplace();
        }
        result->setText(group, KeyFile::keyFor(entry->first), entry->second);
    }
    return result;
}

} // namespace pelistra::linux
