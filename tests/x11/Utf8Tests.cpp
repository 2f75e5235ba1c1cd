#include "platform/x11/Utf8.h"

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using x11::appendCharacter;
using x11::firstCharacter;
using x11::fromLatin1;
using x11::replacementCharacter;

void expectFirst(std::string_view text, char32_t character, std::size_t length) {
    const x11::Decoded first = firstCharacter(text);
    EXPECT_EQ(first.character, character) << text;
    EXPECT_EQ(first.length, length) << text;
}

TEST(Utf8Tests, ReadsTheFirstAndTheLastCharacterOfEveryLength) {
    for (const char32_t character :
         {0x1U, 0x7FU, 0x80U, 0x7FFU, 0x800U, 0xD7FFU, 0xE000U, 0xFFFFU, 0x10000U, 0x10FFFFU}) {
        std::string text;
        appendCharacter(text, character);
        expectFirst(text + "x", character, text.size());
    }
    expectFirst("中文", U'中', 3);
}

TEST(Utf8Tests, LatinTextHasOneCharacterPerByte) {
    EXPECT_EQ(fromLatin1(""), "");
    EXPECT_EQ(fromLatin1("caf\xE9 \x80\xFF"), "café \xC2\x80ÿ");
}

TEST(Utf8Tests, ABrokenSequenceIsOneReplacement) {
    expectFirst("\xFFx", replacementCharacter, 1);
    expectFirst("\x80x", replacementCharacter, 1);
    // Cut off, at the end and by another character.
    expectFirst("\xE4\xB8", replacementCharacter, 2);
    expectFirst("\xE4x", replacementCharacter, 1);
    // Overlong, a surrogate, beyond the last character.
    expectFirst("\xC0\xAFx", replacementCharacter, 2);
    expectFirst("\xE0\x80\xAFx", replacementCharacter, 3);
    expectFirst("\xF0\x8F\xBF\xBFx", replacementCharacter, 4);
    expectFirst("\xED\xA0\x80x", replacementCharacter, 3);
    expectFirst("\xF4\x90\x80\x80x", replacementCharacter, 4);
}

TEST(Utf8Tests, KnowsCharactersThatControl) {
    for (const char32_t character : {U'\0', U'\n', U'\x1B', U'\x7F', U'\x80', U'\x9F', U'\u2028'}) {
        EXPECT_TRUE(x11::isControl(character)) << static_cast<unsigned>(character);
    }
    for (const char32_t character : {U' ', U'~', U'\xA0', U'中'}) {
        EXPECT_FALSE(x11::isControl(character)) << static_cast<unsigned>(character);
    }
}

TEST(Utf8Tests, KnowsCharactersThatReorder) {
    for (const char32_t character : {U'\u061C', U'\u200E', U'\u202E', U'\u2066', U'\u2069'}) {
        EXPECT_TRUE(x11::isReordering(character)) << static_cast<unsigned>(character);
    }
    for (const char32_t character : {U'a', U'ש', U'\u200D', U'\u2026'}) {
        EXPECT_FALSE(x11::isReordering(character)) << static_cast<unsigned>(character);
    }
}

} // namespace
} // namespace pelistra::testing
