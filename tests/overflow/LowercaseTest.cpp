#include "overflow/Lowercase.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace pelistra::testing {
namespace {

std::string utf8(char32_t code) {
    const auto low = [code](unsigned shift) {
        return static_cast<char>(0x80U | ((code >> shift) & 0x3fU));
    };
    if (code < 0x80) {
        return {static_cast<char>(code)};
    }
    if (code < 0x800) {
        return {static_cast<char>(0xc0U | (code >> 6U)), low(0)};
    }
    if (code < 0x10000) {
        return {static_cast<char>(0xe0U | (code >> 12U)), low(6), low(0)};
    }
    return {static_cast<char>(0xf0U | (code >> 18U)), low(12), low(6), low(0)};
}

TEST(LowercaseTest, Ascii) {
    EXPECT_EQ(lowercased(""), "");
    EXPECT_EQ(lowercased("@AMZ[`amz{ 09"), "@amz[`amz{ 09");
}

TEST(LowercaseTest, OtherScripts) {
    EXPECT_EQ(lowercased("ÄÖÜ ÀÞŸ ẞ"), "äöü àþÿ ß");
    EXPECT_EQ(lowercased("ΑΒΓ ЖЮЯ ԱՖ"), "αβγ жюя աֆ");
    EXPECT_EQ(lowercased("ǅ Ǆ ꙀꝎ"), "ǆ ǆ ꙁꝏ");
    // Georgian, Cherokee and, beyond the basic plane, Deseret.
    EXPECT_EQ(lowercased("ᲐᎠ𐐀𐐧"), "აꭰ𐐨𐑏");
    EXPECT_EQ(lowercased("输入法 日本語 عربي ß ﬁ"), "输入法 日本語 عربي ß ﬁ");
}

TEST(LowercaseTest, CompatibilityLettersBecomePlainOnes) {
    EXPECT_EQ(lowercased("CLOC\u212A \u212B \u2126"), "clock å ω");
    EXPECT_EQ(lowercased("ＷＩＦＩ Ⅷ Ⓐ"), "ｗｉｆｉ ⅷ ⓐ");
}

TEST(LowercaseTest, DottedCapitalIBecomesTwoCharacters) {
    EXPECT_EQ(lowercased("\u0130"), "i\u0307");
    EXPECT_EQ(lowercased("W\u0130FI"), "wi\u0307fi");
    EXPECT_EQ(lowercased("ı"), "ı");
}

TEST(LowercaseTest, SigmaIsFinalAtTheEndOfAWordOnly) {
    EXPECT_EQ(lowercased("ΟΔΥΣΣΕΥΣ"), "οδυσσευς");
    EXPECT_EQ(lowercased("Σ"), "σ");
    EXPECT_EQ(lowercased("ΣΑΣ ΣΑΣ"), "σας σας");
    EXPECT_EQ(lowercased("ΑΣ1"), "ας1");
    EXPECT_EQ(lowercased("1Σ"), "1σ");
    // An apostrophe and a combining accent do not count, neither before nor after.
    EXPECT_EQ(lowercased("Α'Σ"), "α'ς");
    EXPECT_EQ(lowercased("ΑΣ'Α"), "ασ'α");
    EXPECT_EQ(lowercased("Α\u0301Σ\u0301"), "α\u0301ς\u0301");
    EXPECT_EQ(lowercased("ΑΣ\xff"), "ας\xff");
    EXPECT_EQ(lowercased("Α\xffΣ"), "α\xffσ");
}

TEST(LowercaseTest, MalformedBytesStayAsTheyAre) {
    // A stray continuation, an impossible byte, a cut sequence, an overlong one, a surrogate, a
    // code beyond the last; each between letters that are lowered.
    for (const std::string_view bytes :
         {"\x80", "\xff", "\xc3", "\xe2\x82", "\xf0\x9f\x98", "\xc0\xaf", "\xc1\x81",
          "\xe0\x80\x81", "\xf0\x80\x80\x81", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xf8\x88\x80"}) {
        EXPECT_EQ(lowercased("É" + std::string(bytes) + "ABC"), "é" + std::string(bytes) + "abc");
        EXPECT_EQ(lowercased("É" + std::string(bytes)), "é" + std::string(bytes));
    }
}

TEST(LowercaseTest, ZeroBytesAndControlCharactersPass) {
    EXPECT_EQ(lowercased(std::string_view("A\0B", 3)), std::string("a\0b", 3));
    EXPECT_EQ(lowercased(std::string_view("É\0B\n\x7f", 6)), std::string("é\0b\n\x7f", 6));
}

// Every character there is, against what another implementation of the Unicode Standard gives
// (CPython's str.lower): how many change, and the FNV-1a hash over all results.
TEST(LowercaseTest, EveryCharacterMapsAsTheStandardSays) {
    std::uint64_t hash = 0xcbf29ce484222325;
    int changed = 0;
    for (char32_t code = 0; code <= 0x10ffff; ++code) {
        if (code >= 0xd800 && code <= 0xdfff) {
            continue;
        }
        const std::string original = utf8(code);
        const std::string lower = lowercased(original);
        changed += lower == original ? 0 : 1;
        for (const char byte : lower) {
            hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
        }
    }
    EXPECT_EQ(changed, 1433);
    EXPECT_EQ(hash, 0xc319d02e8283b91eU);
}

TEST(LowercaseTest, LongTextsTakeLinearTime) {
    std::string text;
    for (int index = 0; index < 100'000; ++index) {
        text += "Σ'''";
    }
    const std::string lower = lowercased(text);
    EXPECT_EQ(lower.size(), text.size());
    EXPECT_TRUE(lower.starts_with("σ'''σ'''"));
    EXPECT_TRUE(lower.ends_with("σ'''ς'''"));
}

} // namespace
} // namespace pelistra::testing
