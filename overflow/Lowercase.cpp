#include "overflow/Lowercase.h"

#include "overflow/unicode/LowercaseTables.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace pelistra {

namespace {

constexpr char32_t capitalSigma = 0x3a3;
constexpr char32_t smallSigma = 0x3c3;
constexpr char32_t smallFinalSigma = 0x3c2;

bool isAscii(char byte) {
    return static_cast<unsigned char>(byte) < 0x80;
}

char asciiLowercased(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

// What one form of UTF-8 sequence looks like: how the first byte begins, and the smallest code that
// may be written so long.
struct SequenceForm {
    unsigned char mask;
    unsigned char lead;
    char32_t smallest;
};

constexpr auto sequenceForms = std::to_array<SequenceForm>({
    {0x80, 0x00, 0},
    {0xe0, 0xc0, 0x80},
    {0xf0, 0xe0, 0x800},
    {0xf8, 0xf0, 0x10000},
});

struct Character {
    char32_t code = 0;
    // In bytes; 0 when the text does not begin with valid UTF-8.
    std::size_t length = 0;
};

bool isScalar(char32_t code) {
    return code <= 0x10ffff && (code < 0xd800 || code > 0xdfff);
}

Character firstCharacter(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const auto* const form = std::ranges::find_if(sequenceForms, [lead](const SequenceForm& each) {
        return (lead & each.mask) == each.lead;
    });
    const auto length = static_cast<std::size_t>(form - sequenceForms.begin()) + 1;
    if (form == sequenceForms.end() || text.size() < length) {
        return {};
    }
    auto code = static_cast<char32_t>(lead & static_cast<unsigned char>(~form->mask));
    for (const char byte : text.substr(1, length - 1)) {
        const auto continuation = static_cast<unsigned char>(byte);
        if ((continuation & 0xc0U) != 0x80U) {
            return {};
        }
        code = (code << 6U) | (continuation & 0x3fU);
    }
    return code >= form->smallest && isScalar(code) ? Character{.code = code, .length = length}
                                                    : Character{};
}

void append(std::string& text, char32_t code) {
    const auto continuation = [code](unsigned shift) {
        return static_cast<char>(0x80U | ((code >> shift) & 0x3fU));
    };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xc0U | (code >> 6U));
        text += continuation(0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xe0U | (code >> 12U));
        text += continuation(6);
        text += continuation(0);
    } else {
        text += static_cast<char>(0xf0U | (code >> 18U));
        text += continuation(12);
        text += continuation(6);
        text += continuation(0);
    }
}

// The entry that would hold the code in a table ordered by its entries' last codes.
template <class Entry, std::size_t size>
const Entry* entryFor(const std::array<Entry, size>& table, char32_t code) {
    const auto* const found = std::ranges::lower_bound(table, code, {}, &Entry::last);
    return found != table.end() && code >= found->first ? found : nullptr;
}

bool isCased(char32_t code) {
    return entryFor(unicode::casedRanges, code) != nullptr;
}

bool isCaseIgnorable(char32_t code) {
    return entryFor(unicode::caseIgnorableRanges, code) != nullptr;
}

char32_t simpleLowercase(char32_t code) {
    const auto* const run = entryFor(unicode::lowercaseRuns, code);
    if (run == nullptr || (code - run->first) % run->step != 0) {
        return code;
    }
    return static_cast<char32_t>(static_cast<std::int32_t>(code) + run->distance);
}

// Whether a cased character follows, looking past characters that do not count.
bool casedFollows(std::string_view rest) {
    while (!rest.empty()) {
        const Character next = firstCharacter(rest);
        if (next.length == 0) {
            return false;
        }
        if (isCased(next.code)) {
            return true;
        }
        if (!isCaseIgnorable(next.code)) {
            return false;
        }
        rest.remove_prefix(next.length);
    }
    return false;
}

// Lower-cases a text from left to right, remembering what decides the form of a sigma.
class Lowercaser {
public:
    explicit Lowercaser(std::string_view text) : rest_(text) { result_.reserve(text.size()); }

    std::string run() {
        while (!rest_.empty()) {
            step();
        }
        return std::move(result_);
    }

private:
    void step() {
        const Character character = firstCharacter(rest_);
        if (character.length == 0) {
            result_ += rest_.front();
            rest_.remove_prefix(1);
            casedBefore_ = false;
            return;
        }
        rest_.remove_prefix(character.length);
        appendLowercase(character.code);
        casedBefore_ = isCased(character.code) || (casedBefore_ && isCaseIgnorable(character.code));
    }

    void appendLowercase(char32_t code) {
        if (code == capitalSigma) {
            append(result_, casedBefore_ && !casedFollows(rest_) ? smallFinalSigma : smallSigma);
            return;
        }
        const auto* const pair =
            std::ranges::find(unicode::lowercasePairs, code, &unicode::LowercasePair::code);
        if (pair == unicode::lowercasePairs.end()) {
            append(result_, simpleLowercase(code));
            return;
        }
        append(result_, pair->lower[0]);
        append(result_, pair->lower[1]);
    }

    std::string_view rest_;
    std::string result_;
    // Whether a cased character came before, with only characters between that do not count.
    bool casedBefore_ = false;
};

} // namespace

std::string lowercased(std::string_view text) {
    if (!std::ranges::all_of(text, isAscii)) {
        return Lowercaser(text).run();
    }
    std::string result(text);
    std::ranges::transform(result, result.begin(), asciiLowercased);
    return result;
}

} // namespace pelistra
