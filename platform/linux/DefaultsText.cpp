#include "platform/linux/DefaultsText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

namespace pelistra::desktop {

namespace {

constexpr auto firstLine = "# What Pelistra remembers. One value a line: \"key\" = value.";
constexpr std::string_view blanks = " \t\r";

void skipBlanks(std::string_view& rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks), rest.size()));
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        switch (character) {
        case '"':
            result += "\\\"";
            break;
        case '\\':
            result += "\\\\";
            break;
        case '\n':
            result += "\\n";
            break;
        case '\t':
            result += "\\t";
            break;
        default:
            result += character;
        }
    }
    return result + '"';
}

std::optional<char> escaped(char character) {
    switch (character) {
    case '"':
    case '\\':
        return character;
    case 'n':
        return '\n';
    case 't':
        return '\t';
    default:
        return std::nullopt;
    }
}

// Takes a quoted text off the front.
std::optional<std::string> takeQuoted(std::string_view& rest) {
    if (rest.empty() || rest.front() != '"') {
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
            continue;
        }
        ++i;
        const auto character = i < rest.size() ? escaped(rest[i]) : std::nullopt;
        if (!character) {
            return std::nullopt;
        }
        result += *character;
    }
    return std::nullopt;
}

std::optional<DefaultsValue> parseLiteral(std::string_view literal) {
    if (literal == "true" || literal == "false") {
        return literal == "true";
    }
    if (literal.starts_with('"')) {
        auto text = takeQuoted(literal);
        return text && literal.empty() ? std::optional<DefaultsValue>(*text) : std::nullopt;
    }
    double number = 0;
    const char* end = literal.data() + literal.size();
    // NOLINTNEXTLINE(bugprone-suspicious-stringview-data-usage): the end goes along
    const auto parsed = std::from_chars(literal.data(), end, number);
    if (parsed.ec != std::errc{} || parsed.ptr != end || !std::isfinite(number)) {
        return std::nullopt;
    }
    return number;
}

std::string literalOf(const DefaultsValue& value) {
    if (const bool* flag = std::get_if<bool>(&value)) {
        return *flag ? "true" : "false";
    }
    if (const auto* text = std::get_if<std::string>(&value)) {
        return quoted(*text);
    }
    constexpr std::size_t longestDouble = 32;
    std::string digits(longestDouble, '\0');
    const auto written =
        std::to_chars(digits.data(), digits.data() + digits.size(), std::get<double>(value));
    digits.resize(static_cast<std::size_t>(written.ptr - digits.data()));
    return digits;
}

std::optional<std::pair<std::string, DefaultsValue>> parseLine(std::string_view line) {
    skipBlanks(line);
    auto key = takeQuoted(line);
    skipBlanks(line);
    if (!key || !line.starts_with('=')) {
        return std::nullopt;
    }
    line.remove_prefix(1);
    skipBlanks(line);
    line = line.substr(0, line.find_last_not_of(blanks) + 1);
    auto value = parseLiteral(line);
    if (!value) {
        return std::nullopt;
    }
    return std::pair{std::move(*key), std::move(*value)};
}

bool saysNothing(std::string_view line) {
    skipBlanks(line);
    return line.empty() || line.front() == '#';
}

} // namespace

DefaultsText::DefaultsText(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines_.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (saysNothing(lines_.back())) {
            continue;
        }
        if (auto entry = parseLine(lines_.back())) {
            lineOfKey_[entry->first] = lines_.size() - 1;
            values_[entry->first] = std::move(entry->second);
        } else {
            damagedLines_.push_back(lines_.size());
        }
    }
}

std::optional<DefaultsValue> DefaultsText::value(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
}

bool DefaultsText::canHold(const DefaultsValue& value) {
    const double* number = std::get_if<double>(&value);
    return number == nullptr || std::isfinite(*number);
}

void DefaultsText::setValue(std::string_view key, const DefaultsValue& value) {
    if (!canHold(value)) {
        return;
    }
    std::string line = quoted(key) + " = " + literalOf(value);
    values_.insert_or_assign(std::string(key), value);
    if (const auto found = lineOfKey_.find(key); found != lineOfKey_.end()) {
        lines_[found->second] = std::move(line);
        return;
    }
    if (lines_.empty()) {
        lines_.emplace_back(firstLine);
    }
    lines_.push_back(std::move(line));
    lineOfKey_.emplace(key, lines_.size() - 1);
}

std::string DefaultsText::text() const {
    std::string result;
    for (const std::string& line : lines_) {
        result += line;
        result += '\n';
    }
    return result;
}

} // namespace pelistra::desktop
