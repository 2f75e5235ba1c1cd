#include "tests/fuzz/Check.h"

#include <algorithm>
#include <array>

namespace pelistra::fuzz {

namespace {

// A row of the table of well-formed UTF-8: the range of the first byte, that of the second, and how
// many bytes there are.
struct Row {
    unsigned char first;
    unsigned char last;
    unsigned char secondFirst;
    unsigned char secondLast;
    std::size_t length;
};
constexpr std::array<Row, 9> rows{{{0x00, 0x7F, 0, 0, 1},
                                   {0xC2, 0xDF, 0x80, 0xBF, 2},
                                   {0xE0, 0xE0, 0xA0, 0xBF, 3},
                                   {0xE1, 0xEC, 0x80, 0xBF, 3},
                                   {0xED, 0xED, 0x80, 0x9F, 3},
                                   {0xEE, 0xEF, 0x80, 0xBF, 3},
                                   {0xF0, 0xF0, 0x90, 0xBF, 4},
                                   {0xF1, 0xF3, 0x80, 0xBF, 4},
                                   {0xF4, 0xF4, 0x80, 0x8F, 4}}};

bool isBetween(char byte, unsigned char first, unsigned char last) {
    const auto value = static_cast<unsigned char>(byte);
    return value >= first && value <= last;
}

// The length of the sequence that the text begins with; 0 when it is not well-formed.
std::size_t sequenceLength(std::string_view text) {
    const auto* const row = std::ranges::find_if(
        rows, [&](const Row& each) { return isBetween(text.front(), each.first, each.last); });
    if (row == rows.end() || text.size() < row->length) {
        return 0;
    }
    if (row->length > 1 && !isBetween(text[1], row->secondFirst, row->secondLast)) {
        return 0;
    }
    for (std::size_t i = 2; i < row->length; ++i) {
        if (!isBetween(text[i], 0x80, 0xBF)) {
            return 0;
        }
    }
    return row->length;
}

bool isHarmful(std::string_view sequence) {
    if (sequence.size() == 1) {
        return isBetween(sequence.front(), 0x00, 0x1F) || sequence.front() == '\x7F';
    }
    if (sequence.size() == 2 && sequence.front() == '\xC2') {
        return isBetween(sequence[1], 0x80, 0x9F);
    }
    // U+200E, U+200F, U+2028 to U+202E, U+2066 to U+2069, and U+061C.
    if (sequence.starts_with("\xE2\x80")) {
        return isBetween(sequence[2], 0x8E, 0x8F) || isBetween(sequence[2], 0xA8, 0xAE);
    }
    if (sequence.starts_with("\xE2\x81")) {
        return isBetween(sequence[2], 0xA6, 0xA9);
    }
    return sequence == "\xD8\x9C";
}

} // namespace

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

long cleanLength(std::string_view text) {
    long characters = 0;
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        if (length == 0 || isHarmful(text.substr(0, length))) {
            return -1;
        }
        text.remove_prefix(length);
        ++characters;
    }
    return characters;
}

} // namespace pelistra::fuzz

// Where the fuzzer comes in, under the name that it asks for.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    pelistra::fuzz::tryInput({data, size});
    return 0;
}
