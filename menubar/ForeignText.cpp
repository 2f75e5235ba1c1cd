#include "menubar/ForeignText.h"

#include <cstdint>

namespace pelistra::menubar {

namespace {

constexpr char32_t replacement = 0xFFFD;

struct Decoded {
    char32_t character = replacement;
    std::size_t length = 1;
};

struct Lead {
    std::size_t length;
    char32_t bits;
    char32_t least;
};

Lead leadOf(unsigned char byte) {
    if (byte < 0x80) {
        return {.length = 1, .bits = byte, .least = 0};
    }
    if (byte >= 0xC2 && byte < 0xE0) {
        return {.length = 2, .bits = byte & 0x1FU, .least = 0x80};
    }
    if (byte >= 0xE0 && byte < 0xF0) {
        return {.length = 3, .bits = byte & 0x0FU, .least = 0x800};
    }
    if (byte >= 0xF0 && byte < 0xF5) {
        return {.length = 4, .bits = byte & 0x07U, .least = 0x10000};
    }
    return {.length = 0, .bits = 0, .least = 0};
}

Decoded decode(std::string_view text) {
    const Lead lead = leadOf(static_cast<unsigned char>(text.front()));
    if (lead.length == 0 || lead.length > text.size()) {
        return {};
    }
    char32_t character = lead.bits;
    for (std::size_t i = 1; i < lead.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0U) != 0x80U) {
            return {};
        }
        character = (character << 6U) | (byte & 0x3FU);
    }
    const bool surrogate = character >= 0xD800 && character < 0xE000;
    if (character < lead.least || surrogate || character > 0x10FFFF) {
        return {};
    }
    return {.character = character, .length = lead.length};
}

void append(std::string& text, char32_t character) {
    const auto put = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0U | (character >> 6U));
        put(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        put(0xE0U | (character >> 12U));
        put(0x80U | ((character >> 6U) & 0x3FU));
        put(0x80U | (character & 0x3FU));
    } else {
        put(0xF0U | (character >> 18U));
        put(0x80U | ((character >> 12U) & 0x3FU));
        put(0x80U | ((character >> 6U) & 0x3FU));
        put(0x80U | (character & 0x3FU));
    }
}

bool isUnwanted(char32_t character) {
    const bool control = character < 0x20 || (character >= 0x7F && character < 0xA0);
    const bool separator = character == 0x2028 || character == 0x2029;
    const bool direction = character == 0x061C || (character >= 0x202A && character <= 0x202E) ||
                           (character >= 0x2066 && character <= 0x2069) || character == 0x200E ||
                           character == 0x200F;
    return control || separator || direction;
}

} // namespace

std::string cleanText(std::string_view foreign, std::size_t characterLimit) {
    std::string result;
    std::size_t characters = 0;
    while (!foreign.empty() && characters < characterLimit) {
        const Decoded decoded = decode(foreign);
        foreign.remove_prefix(decoded.length);
        if (!isUnwanted(decoded.character)) {
            append(result, decoded.character);
            ++characters;
        }
    }
    return result;
}

std::string cleanLatinText(std::string_view foreign, std::size_t characterLimit) {
    std::string utf8;
    for (const char byte : foreign.substr(0, characterLimit)) {
        append(utf8, static_cast<unsigned char>(byte));
    }
    return cleanText(utf8, characterLimit);
}

} // namespace pelistra::menubar
