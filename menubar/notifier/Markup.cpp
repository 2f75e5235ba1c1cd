#include "menubar/notifier/Markup.h"

#include "menubar/ForeignText.h"
#include "platform/x11/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

namespace pelistra::menubar {

namespace {

// What comes later is left out.
constexpr std::size_t byteLimit = std::size_t{8} * 1024;
constexpr std::size_t longestTag = 512;

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

// The tag at the start of the text, with its brackets; empty when there is none.
std::string_view tagAt(std::string_view text) {
    const bool begins = text.size() > 1 && text[0] == '<' &&
                        (isLetter(text[1]) || text[1] == '/' || text[1] == '!');
    const std::size_t end = begins ? text.substr(0, longestTag).find('>') : std::string_view::npos;
    return end == std::string_view::npos ? std::string_view() : text.substr(0, end + 1);
}

bool breaksTheLine(std::string_view tag) {
    const std::size_t begin = tag.find_first_not_of("</");
    const std::string_view rest = tag.substr(std::min(begin, tag.size()));
    const auto end = std::ranges::find_if_not(
        rest, [](char next) { return isLetter(next) || (next >= '0' && next <= '9'); });
    std::string name(rest.begin(), end);
    std::ranges::transform(name, name.begin(),
                           [](char next) { return static_cast<char>(next | 0x20); });
    constexpr std::array<std::string_view, 10> breaking{"br", "p",  "div",   "li", "ul",
                                                        "ol", "tr", "table", "hr", "body"};
    return std::ranges::find(breaking, name) != breaking.end();
}

// What the reference at the start of the text stands for; empty when it is none. `length` becomes
// its own length.
std::string referenceAt(std::string_view text, std::size_t& length) {
    constexpr std::size_t longest = 10;
    constexpr std::array<std::pair<std::string_view, std::string_view>, 6> names{
        {{"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}, {"nbsp", " "}}};
    const std::size_t end = text.substr(0, longest).find(';');
    if (text.front() != '&' || end == std::string_view::npos) {
        return {};
    }
    length = end + 1;
    std::string_view name = text.substr(1, end - 1);
    if (!name.starts_with('#')) {
        const auto found = std::ranges::find(names, name, &decltype(names)::value_type::first);
        return found == names.end() ? std::string() : std::string(found->second);
    }
    name.remove_prefix(1);
    const bool hexadecimal = name.starts_with('x');
    name.remove_prefix(hexadecimal ? 1 : 0);
    std::uint32_t code = 0;
    const auto result =
        std::from_chars(name.data(), name.data() + name.size(), code, hexadecimal ? 16 : 10);
    constexpr std::uint32_t firstSurrogate = 0xD800;
    constexpr std::uint32_t lastSurrogate = 0xDFFF;
    constexpr std::uint32_t last = 0x10FFFF;
    if (result.ec != std::errc() || result.ptr != name.data() + name.size() || code > last ||
        (code >= firstSurrogate && code <= lastSurrogate)) {
        return {};
    }
    std::string character;
    x11::appendCharacter(character, code);
    return character;
}

std::string withoutMarkup(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        std::size_t length = 1;
        if (const std::string_view tag = tagAt(text); !tag.empty()) {
            length = tag.size();
            result += breaksTheLine(tag) ? "\n" : "";
        } else if (const std::string character = referenceAt(text, length); !character.empty()) {
            result += character;
        } else {
            length = 1;
            result += text.front();
        }
        text.remove_prefix(length);
    }
    return result;
}

} // namespace

std::string plainText(std::string_view markup, std::size_t characterLimit, std::size_t lineLimit) {
    const std::string text = withoutMarkup(markup.substr(0, byteLimit));
    std::string result;
    std::size_t lines = 0;
    for (std::size_t begin = 0; begin < text.size() && lines < lineLimit;) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string line =
            cleanText(std::string_view(text).substr(begin, end - begin), characterLimit);
        if (line.find_first_not_of(' ') != std::string::npos) {
            result += (lines == 0 ? "" : "\n") + line;
            ++lines;
        }
        begin = end + 1;
    }
    return result;
}

} // namespace pelistra::menubar
