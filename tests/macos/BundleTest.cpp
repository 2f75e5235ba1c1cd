#include "packaging/macos/icon/Files.h"
#include "tests/desktop/harness/FileContent.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;

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
    EXPECT_THAT(contentOf(PELISTRA_MACOS_PACKAGING "/Pelistra.entitlements"), HasSubstr("<dict/>"));
}

std::uint32_t numberAt(const icon::Bytes& bytes, std::size_t place) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        number = number << 8 | bytes.at(place + i);
    }
    return number;
}

std::string textAt(const icon::Bytes& bytes, std::size_t place) {
    return {bytes.begin() + static_cast<std::ptrdiff_t>(place),
            bytes.begin() + static_cast<std::ptrdiff_t>(place) + 4};
}

TEST(IconFileTest, HoldsEverySize) {
    const icon::Bytes file = icon::icnsFile();
    ASSERT_EQ(textAt(file, 0), "icns");
    ASSERT_EQ(numberAt(file, 4), file.size());
    std::vector<std::pair<std::string, std::uint32_t>> members;
    for (std::size_t place = 8; place < file.size(); place += numberAt(file, place + 4)) {
        // A PNG file has its width after its signature and the head of its first chunk.
        EXPECT_EQ(file.at(place + 8), 0x89);
        EXPECT_EQ(numberAt(file, place + 8 + 16), numberAt(file, place + 8 + 20));
        members.emplace_back(textAt(file, place), numberAt(file, place + 8 + 16));
    }
    EXPECT_THAT(members, ElementsAre(Pair("icp4", 16U), Pair("icp5", 32U), Pair("ic11", 32U),
                                     Pair("ic12", 64U), Pair("ic07", 128U), Pair("ic13", 256U),
                                     Pair("ic08", 256U), Pair("ic14", 512U), Pair("ic09", 512U),
                                     Pair("ic10", 1024U)));
}

TEST(IconTest, ShowsADividerBetweenHiddenAndVisibleDots) {
    const icon::Picture picture = icon::drawIcon(128);
    const auto brightness = [&picture](int x, int y) {
        const std::size_t place =
            (static_cast<std::size_t>(y) * 128 + static_cast<std::size_t>(x)) * 4;
        return picture.pixels.at(place) + picture.pixels.at(place + 1) +
               picture.pixels.at(place + 2);
    };
    constexpr int row = 50;
    // The divider is dark on the bright bar; hidden dots are paler than visible ones.
    EXPECT_LT(brightness(64, row), 450);
    EXPECT_GT(brightness(57, row), 700);
    EXPECT_GT(brightness(37, row), brightness(91, row) + 100);
    // Nothing reaches the corners.
    EXPECT_EQ(picture.pixels.at(3), 0);
}

TEST(SignAndPackTest, SaysHowItIsUsed) {
    EXPECT_NE(std::system(PELISTRA_MACOS_PACKAGING "/sign-and-pack 2>/dev/null"), 0);
    EXPECT_EQ(std::system("sh -n " PELISTRA_MACOS_PACKAGING "/sign-and-pack"), 0);
}

} // namespace
} // namespace pelistra::testing
