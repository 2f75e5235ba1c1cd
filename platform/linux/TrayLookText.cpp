#include "platform/linux/TrayLookText.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace pelistra::desktop {

namespace {

constexpr char32_t replacement = 0xFFFD;

struct Decoded {
    char32_t character = replacement;
    std::size_t length = 1;
};

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
            return {.character = replacement, .length = i};
        }
        character =
            (character << bitsPerContinuation) |
            (static_cast<unsigned char>(text[i]) & static_cast<unsigned char>(~continuationMask));
    }
    const bool valid = character >= lead.smallest && isScalar(character);
    return {.character = valid ? character : replacement, .length = lead.length};
}

// The first character of a text that is not empty.
Decoded decode(std::string_view text) {
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < continuationBits) {
        return {.character = first, .length = 1};
    }
    const auto* const lead = std::ranges::find_if(
        leads, [&](const Lead& candidate) { return (first & candidate.mask) == candidate.bits; });
    return lead == leads.end() ? Decoded{} : decodeSequence(text, *lead);
}

std::string encode(char32_t character) {
    if (character < continuationBits) {
        return {static_cast<char>(character)};
    }
    const auto* const lead = std::ranges::find_if(leads, [&](const Lead& candidate) {
        const unsigned payload = static_cast<unsigned>(candidate.length) * 5 + 1;
        return character < (char32_t{1} << payload);
    });
    std::string result(lead->length, '\0');
    for (std::size_t i = lead->length - 1; i > 0; --i) {
        result[i] = static_cast<char>(continuationBits | (character & 0x3F));
        character >>= bitsPerContinuation;
    }
    result[0] = static_cast<char>(lead->bits | character);
    return result;
}

bool isControl(char32_t character) {
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x2028 ||
           character == 0x2029;
}

// Marks, embeddings, overrides and isolates of the bidirectional algorithm.
bool isReordering(char32_t character) {
    return character == 0x061C || character == 0x200E || character == 0x200F ||
           (character >= 0x202A && character <= 0x202E) ||
           (character >= 0x2066 && character <= 0x2069);
}

// Whether it can be handed on as it is. Plain char has a sign or none.
bool isPlain(std::string_view text, std::size_t byteLimit) {
    return text.size() <= byteLimit &&
           std::ranges::all_of(text, [](char c) { return c >= ' ' && c < '\x7F'; });
}

// Appends a character in presentable form; false when the text is full.
bool append(std::string& text, char32_t character, std::size_t byteLimit) {
    if (isReordering(character)) {
        return true;
    }
    const std::string bytes = isControl(character) ? " " : encode(character);
    if (bytes.size() > byteLimit - text.size()) {
        return false;
    }
    text += bytes;
    return true;
}

} // namespace

std::string presentableText(std::string_view utf8, std::size_t byteLimit) {
    if (isPlain(utf8, byteLimit)) {
        return std::string(utf8);
    }
    std::string result;
    while (!utf8.empty()) {
        const Decoded next = decode(utf8);
        if (!append(result, next.character, byteLimit)) {
            break;
        }
        utf8.remove_prefix(next.length);
    }
    return result;
}

std::string presentableLatin1(std::string_view latin1) {
    std::string result;
    for (const char byte : latin1) {
        if (!append(result, static_cast<unsigned char>(byte), presentableTextByteLimit)) {
            break;
        }
    }
    return result;
}

} // namespace pelistra::desktop
