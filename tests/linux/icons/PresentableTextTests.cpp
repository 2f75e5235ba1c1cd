#include "platform/linux/icons/PresentableText.h"

#include <string>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using linux::presentableLatin1;
using linux::presentableText;
using linux::presentableTextByteLimit;

constexpr const char* replacement = "\xEF\xBF\xBD";

TEST(PresentableText, KeepsWhatIsFine) {
    EXPECT_EQ(presentableText(""), "");
    EXPECT_EQ(presentableText("PelistraV3.Control"), "PelistraV3.Control");
    EXPECT_EQ(presentableText("网络 Wi\xE2\x80\x91"
                              "Fi 😀"),
              "网络 Wi\xE2\x80\x91"
              "Fi 😀");
}

TEST(PresentableText, KeepsLettersOfRightToLeftScripts) {
    EXPECT_EQ(presentableText("שלום"), "שלום");
}

TEST(PresentableText, DropsWhatReordersTheTextAroundIt) {
    EXPECT_EQ(presentableText("a\xE2\x80\xAEzip\xE2\x80\xAC\xE2\x81\xA6z\xE2\x81\xA9\xE2\x80\x8F"),
              "azipz");
}

TEST(PresentableText, TurnsControlCharactersIntoSpaces) {
    EXPECT_EQ(presentableText("a\nb\tc\x7F"
                              "d\x1B[0m"),
              "a b c d [0m");
    EXPECT_EQ(presentableText("a\xC2\x85"
                              "b\xE2\x80\xA8"
                              "c"),
              "a b c");
}

TEST(PresentableText, ReplacesWhatIsNoUtf8) {
    EXPECT_EQ(presentableText("a\xFF"
                              "b"),
              std::string("a") + replacement + "b");
    // A lead byte without its continuation, at the end and in the middle.
    EXPECT_EQ(presentableText("a\xE4"), std::string("a") + replacement);
    EXPECT_EQ(presentableText("\xE4\xB8x"), std::string(replacement) + "x");
    // Overlong, surrogate, beyond the last character, stray continuation.
    EXPECT_EQ(presentableText("\xC0\x80"), replacement);
    EXPECT_EQ(presentableText("\xED\xA0\x80"), replacement);
    EXPECT_EQ(presentableText("\xF4\x90\x80\x80"), replacement);
    EXPECT_EQ(presentableText("\x80"), replacement);
}

TEST(PresentableText, CutsBetweenCharacters) {
    EXPECT_EQ(presentableText(std::string(1'000'000, 'x')),
              std::string(presentableTextByteLimit, 'x'));
    std::string han;
    for (int i = 0; i < 1000; ++i) {
        han += "语";
    }
    const std::string cut = presentableText(han);
    EXPECT_EQ(cut.size(), presentableTextByteLimit / 3 * 3);
    EXPECT_EQ(cut, han.substr(0, cut.size()));
}

TEST(PresentableText, ReadsLatin1) {
    EXPECT_EQ(presentableLatin1("caf\xE9\n"), "café ");
    EXPECT_EQ(presentableLatin1(std::string(1000, '\xE9')).size(), presentableTextByteLimit);
}

} // namespace
} // namespace pelistra::testing
