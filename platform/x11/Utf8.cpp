#include "platform/x11/Utf8.h"

#include <algorithm>
#include <array>

namespace pelistra::x11 {

namespace {

// How a lead byte begins a sequence of more than one byte.
struct Lead {
    unsigned char mask;
    unsigned char bits;
    std::size_t length;
    char32_t smallest;
};
constexpr std::array<Lead, 3> leads{
    {{.mask = 0xE0, .bits = 0xC0, .length = 2, .smallest = 0x80},
     {.mask = 0xF0, .bits = 0xE0, .length = 3, .smallest = 0x800},
     {.mask = 0xF8, .bits = 0xF0, .length = 4, .smallest = 0x10000}}};
constexpr unsigned char continuationMask = 0xC0;
constexpr unsigned char continuationBits = 0x80;
constexpr unsigned bitsPerContinuation = 6;

bool isContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & continuationMask) == continuationBits;
}

bool isScalar(char32_t character) {
    return character <= 0x10FFFF && (character < 0xD800 || character > 0xDFFF);
}

Decoded decodeSequence(std::string_view text, const Lead& lead) {
    auto character = static_cast<char32_t>(static_cast<unsigned char>(text[0]) &
                                           static_cast<unsigned char>(~lead.mask));
    for (std::size_t i = 1; i < lead.length; ++i) {
        if (i >= text.size() || !isContinuation(text[i])) {
            return {.character = replacementCharacter, .length = i};
        }
        character =
            (character << bitsPerContinuation) |
            (static_cast<unsigned char>(text[i]) & static_cast<unsigned char>(~continuationMask));
    }
    const bool valid = character >= lead.smallest && isScalar(character);
    return {.character = valid ? character : replacementCharacter, .length = lead.length};
}

} // namespace

Decoded firstCharacter(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < continuationBits) {
        return {.character = first, .length = 1};
    }
    const auto* const lead = std::ranges::find_if(
        leads, [&](const Lead& candidate) { return (first & candidate.mask) == candidate.bits; });
    return lead == leads.end() ? Decoded{} : decodeSequence(text, *lead);
}

void appendCharacter(std::string& text, char32_t character) {
    if (character < continuationBits) {
        text += static_cast<char>(character);
        return;
    }
    const auto* const lead = std::ranges::find_if(leads, [&](const Lead& candidate) {
        const unsigned payload = static_cast<unsigned>(candidate.length) * 5 + 1;
        return character < (char32_t{1} << payload);
    });
    const std::size_t begin = text.size();
    text.resize(begin + lead->length);
    for (std::size_t i = begin + lead->length - 1; i > begin; --i) {
        text[i] = static_cast<char>(continuationBits | (character & 0x3F));
        character >>= bitsPerContinuation;
    }
    text[begin] = static_cast<char>(lead->bits | character);
}

std::string fromLatin1(std::string_view latin1) {
    std::string utf8;
    for (const char byte : latin1) {
        appendCharacter(utf8, static_cast<unsigned char>(byte));
    }
    return utf8;
}

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x2028 ||
           character == 0x2029;
}

bool isReordering(char32_t character) {
    return character == 0x061C || character == 0x200E || character == 0x200F ||
           (character >= 0x202A && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

} // namespace pelistra::x11
