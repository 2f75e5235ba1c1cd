#include "menubar/ForeignText.h"

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::cleanLatinText;
using menubar::cleanText;

constexpr std::size_t plenty = 100;

TEST(ForeignTextTests, GoodTextStaysAsItIs) {
    EXPECT_EQ(cleanText("Plain — 中文 🙂 é", plenty), "Plain — 中文 🙂 é");
    EXPECT_EQ(cleanText("", plenty), "");
}

TEST(ForeignTextTests, ControlCharactersGo) {
    EXPECT_EQ(cleanText("a\x1b[31mb\nc\td\x7f", plenty), "a[31mbcd");
    EXPECT_EQ(cleanText(std::string_view("a\0b", 3), plenty), "ab");
    EXPECT_EQ(cleanText("a\xc2\x85z", plenty), "az");
}

TEST(ForeignTextTests, CharactersThatTurnTheDirectionGo) {
    EXPECT_EQ(cleanText("a\u202eb\u2066c\u200fd\u2028e\u061cf", plenty), "abcdef");
}

TEST(ForeignTextTests, BrokenBytesAreReplaced) {
    EXPECT_EQ(cleanText("a\xff"
                        "b",
                        plenty),
              "a\uFFFDb");
    EXPECT_EQ(cleanText("\xe4\xb8", plenty), "\uFFFD");
    EXPECT_EQ(cleanText("\xc0\xafz", plenty), "\uFFFDz");
}

TEST(ForeignTextTests, TheLimitCountsCharactersNotBytes) {
    EXPECT_EQ(cleanText("中文字", 2), "中文");
    EXPECT_EQ(cleanText("abc", 0), "");
    EXPECT_EQ(cleanText(std::string(100000, 'x'), 3), "xxx");
}

TEST(ForeignTextTests, LatinTextBecomesUtf8) {
    EXPECT_EQ(cleanLatinText("caf\xe9", plenty), "café");
    EXPECT_EQ(cleanLatinText("a\x1b\x9b"
                             "b",
                             plenty),
              "ab");
    EXPECT_EQ(cleanLatinText("abc", 2), "ab");
}

} // namespace
} // namespace pelistra::testing
