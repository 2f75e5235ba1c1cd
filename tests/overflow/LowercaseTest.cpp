#include "overflow/Lowercase.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cwctype>
#include <string>
#include <string_view>

namespace pelistra::testing {
namespace {

constexpr wchar_t kelvinSign = 0x212a;
constexpr wchar_t dottedCapitalI = 0x130;

class LowercaseTest : public ::testing::Test {
protected:
    void TearDown() override { std::setlocale(LC_CTYPE, "C"); }
};

TEST_F(LowercaseTest, Ascii) {
    EXPECT_EQ(lowercased(""), "");
    EXPECT_EQ(lowercased("@AMZ[`amz{ 09"), "@amz[`amz{ 09");
    EXPECT_EQ(lowercased(std::string_view("A\0B\x7f", 4)), std::string("a\0b\x7f", 4));
}

TEST_F(LowercaseTest, LettersThatBecomeAscii) {
    EXPECT_EQ(lowercased("CLOC\u212a"), "clock");
    EXPECT_EQ(lowercased("WIF\u0130"), "wifi\u0307");
    EXPECT_EQ(lowercased("W\u0130FI"), "wi\u0307fi");
    EXPECT_EQ(lowercased("ÄЖΣ输入ß"), "ÄЖΣ输入ß");
}

// What is looked for is written in small letters of ASCII and in the two characters of 输入. Of all
// other characters none becomes one of these, so it does not matter what they become. (Full
// lower-casing gives more than one character only for the dotted capital I.)
TEST_F(LowercaseTest, NoOtherCharacterBecomesOneThatIsLookedFor) {
    ASSERT_NE(std::setlocale(LC_CTYPE, "C.UTF-8"), nullptr);
    ASSERT_EQ(std::towlower(L'Ж'), std::wint_t{L'ж'});
    constexpr std::wstring_view lookedFor = L"abcdefghijklmnopqrstuvwxyz输入";
    for (wchar_t code = 0x80; code <= 0x10ffff; ++code) {
        const auto lower = static_cast<wchar_t>(std::towlower(static_cast<std::wint_t>(code)));
        const bool becomesLookedFor = lower != code && lookedFor.find(lower) != lookedFor.npos;
        if (becomesLookedFor != (code == kelvinSign || code == dottedCapitalI)) {
            ADD_FAILURE() << std::hex << static_cast<unsigned>(code);
        }
    }
}

TEST_F(LowercaseTest, MalformedBytesStayAsTheyAre) {
    // A stray continuation, an impossible byte, a cut sequence, an overlong one, a surrogate, a
    // code beyond the last, the beginnings of the two letters; each between letters that are
    // lowered.
    for (const std::string_view bytes :
         {"\x80", "\xff", "\xc3", "\xe2\x82", "\xf0\x9f\x98", "\xc0\xaf", "\xc1\x81",
          "\xe0\x80\x81", "\xf0\x80\x80\x81", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xf8\x88\x80",
          "\xe2\x84", "\xc4"}) {
        EXPECT_EQ(lowercased("\u212a" + std::string(bytes) + "ABC"),
                  "k" + std::string(bytes) + "abc");
        EXPECT_EQ(lowercased("A" + std::string(bytes)), "a" + std::string(bytes));
    }
}

} // namespace
} // namespace pelistra::testing
