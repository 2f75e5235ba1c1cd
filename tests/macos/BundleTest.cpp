#include "tests/desktop/harness/FileContent.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::string between(const std::string& text, const std::string& from, const std::string& to) {
    const auto start = text.find(from);
    const auto end = text.find(to, start);
    return start == std::string::npos || end == std::string::npos
               ? ""
               : text.substr(start + from.size(), end - start - from.size());
}

// The element after a key of a property list's dictionary: its text, or its tag.
std::string valueOf(const std::string& list, const std::string& key) {
    const auto place = list.find("<key>" + key + "</key>");
    if (place == std::string::npos) {
        return "";
    }
    const std::string rest = list.substr(list.find("</key>", place) + std::string("</key>").size());
    const std::string tag = between(rest, "<", ">");
    return tag == "string" ? between(rest, "<string>", "</string>") : tag;
}

TEST(BundleTest, SaysWhatTheApplicationIs) {
    const std::string list = contentOf(PELISTRA_INFO_PLIST);
    EXPECT_EQ(valueOf(list, "LSUIElement"), "true/");
    EXPECT_EQ(valueOf(list, "CFBundleIdentifier"), "com.pelistra.app");
    EXPECT_EQ(valueOf(list, "CFBundleShortVersionString"), PELISTRA_VERSION);
    EXPECT_EQ(valueOf(list, "CFBundleVersion"), PELISTRA_VERSION);
    EXPECT_EQ(valueOf(list, "LSMinimumSystemVersion"), "15.0");
    EXPECT_EQ(valueOf(list, "CFBundleDevelopmentRegion"), "zh-Hans");
    EXPECT_EQ(valueOf(list, "CFBundleExecutable"), "Pelistra");
    EXPECT_EQ(valueOf(list, "CFBundleIconFile"), "Pelistra");
    EXPECT_THAT(valueOf(list, "NSHumanReadableCopyright"), HasSubstr("Pelistra"));
    EXPECT_THAT(list, ::testing::Not(HasSubstr("@")));
}

TEST(BundleTest, AsksForNoEntitlement) {
    const std::string entitlements = contentOf(PELISTRA_MACOS_PACKAGING "/Pelistra.entitlements");
    EXPECT_THAT(entitlements, HasSubstr("<dict/>"));
    // Signatures with a comment in it are refused.
    EXPECT_THAT(entitlements, ::testing::Not(HasSubstr("<!--")));
}

std::uint32_t numberAt(const std::string& bytes, std::size_t place) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8 | static_cast<unsigned char>(bytes.at(place + i));
    }
    return number;
}

TEST(IconFileTest, HoldsEverySize) {
    const std::string file = contentOf(PELISTRA_ICON);
    ASSERT_EQ(file.substr(0, 4), "icns");
    ASSERT_EQ(numberAt(file, 4), file.size());
    std::vector<std::string> members;
    for (std::size_t place = 8; place < file.size(); place += numberAt(file, place + 4)) {
        members.push_back(file.substr(place, 4));
    }
    // 16, 32, 48 and 128 pixels, each with its mask, and 256, 512 and 1024 pixels.
    EXPECT_THAT(members, ElementsAre("is32", "s8mk", "il32", "l8mk", "ih32", "h8mk", "it32", "t8mk",
                                     "ic08", "ic09", "ic10"));
}

TEST(SignAndPackTest, SaysHowItIsUsed) {
    EXPECT_NE(std::system(PELISTRA_MACOS_PACKAGING "/sign-and-pack 2>/dev/null"), 0);
    EXPECT_EQ(std::system("sh -n " PELISTRA_MACOS_PACKAGING "/sign-and-pack"), 0);
}

} // namespace
} // namespace pelistra::testing
