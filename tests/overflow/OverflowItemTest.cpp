#include "overflow/OverflowItem.h"

#include "tests/platform/FakeImages.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace pelistra::testing {
namespace {

OverflowItem item(const std::string& owner, const std::string& window) {
    OverflowItem result;
    result.ownerName = owner;
    result.windowName = window;
    return result;
}

std::string displayName(const std::string& owner, const std::string& window) {
    return item(owner, window).displayName();
}
std::string tooltip(const std::string& owner, const std::string& window) {
    return item(owner, window).tooltip();
}
std::string symbol(const std::string& owner, const std::string& window) {
    return item(owner, window).fallbackSymbol();
}

TEST(OverflowItemTest, IsMadeFromAWindow) {
    const auto icon = std::make_shared<FakeImage>(Size{.width = 32, .height = 32});
    const auto picture = std::make_shared<FakeImage>(Size{.width = 44, .height = 48});
    const Rect frame = makeRect<GlobalSpace>(-10.5, 2, 30, 24);
    const PrivateMenuBarWindow window{.id = 7,
                                      .ownerPID = 300,
                                      .ownerName = "Foo",
                                      .windowName = "Status",
                                      .bundleIdentifier = "org.example.foo",
                                      .frame = frame,
                                      .applicationIcon = icon};
    const OverflowItem expected{.id = 7,
                                .ownerPID = 300,
                                .ownerName = "Foo",
                                .windowName = "Status",
                                .bundleIdentifier = "org.example.foo",
                                .lastKnownFrame = frame,
                                .capturedImage = picture,
                                .applicationIcon = icon};
    EXPECT_EQ(OverflowItem::from(window, picture), expected);
    EXPECT_EQ(OverflowItem::from(window, nullptr).capturedImage, nullptr);
}

TEST(OverflowItemTest, IsEqualByValueWithPicturesByPointer) {
    const auto picture = std::make_shared<FakeImage>(Size{.width = 1, .height = 1});
    OverflowItem one = item("Foo", "Status");
    OverflowItem other = one;
    EXPECT_EQ(one, other);
    one.capturedImage = picture;
    EXPECT_NE(one, other);
    other.capturedImage = picture;
    EXPECT_EQ(one, other);
    other.capturedImage = std::make_shared<FakeImage>(Size{.width = 1, .height = 1});
    EXPECT_NE(one, other);
    other = one;
    other.lastKnownFrame.origin.x = 1;
    EXPECT_NE(one, other);
}

TEST(OverflowItemTest, DisplayNamesOfTheSystemsIcons) {
    EXPECT_EQ(displayName("Owner", "wifi"), "Wi\xe2\x80\x91"
                                            "Fi");
    EXPECT_EQ(displayName("Owner", "wifi").size(), 7U);
    EXPECT_EQ(displayName("Owner", "battery"), "电池");
    EXPECT_EQ(displayName("Owner", "clock"), "时钟");
    EXPECT_EQ(displayName("Owner", "bentobox"), "控制中心");
    EXPECT_EQ(displayName("Owner", "nowplaying"), "正在播放");
    EXPECT_EQ(displayName("Owner", "audiovideomodule"), "音频与视频");
}

TEST(OverflowItemTest, DisplayNameKeysIgnoreCase) {
    EXPECT_EQ(displayName("Owner", "WiFi"), "Wi‑Fi");
    EXPECT_EQ(displayName("Owner", "WIFI"), "Wi‑Fi");
    EXPECT_EQ(displayName("Owner", "BentoBox"), "控制中心");
    EXPECT_EQ(displayName("Owner", "NowPlaying"), "正在播放");
    EXPECT_EQ(displayName("Owner", "AudioVideoModule"), "音频与视频");
    // The Kelvin sign is a capital k.
    EXPECT_EQ(displayName("Owner", "CLOC\u212A"), "时钟");
    // A dotted capital I keeps its dot.
    EXPECT_EQ(displayName("Owner", "W\u0130F\u0130"), "Owner");
}

TEST(OverflowItemTest, DisplayNameKeysAreWholeStrings) {
    for (const char* name : {"wifi2", " wifi", "wifi ", "Wi-Fi", "Wi‑Fi", "wif", "Item-0", ""}) {
        EXPECT_EQ(displayName("Owner", name), "Owner") << name;
    }
    EXPECT_EQ(displayName("Owner", std::string("wifi\0", 5)), "Owner");
}

TEST(OverflowItemTest, DisplayNameWithoutAnyName) {
    EXPECT_EQ(displayName("", ""), "菜单栏项目");
    EXPECT_EQ(displayName("", "Item-0"), "菜单栏项目");
    EXPECT_EQ(displayName("", "Battery"), "电池");
}

TEST(OverflowItemTest, TooltipOfGenericNamesIsTheOwner) {
    EXPECT_EQ(tooltip("Foo", ""), "Foo");
    EXPECT_EQ(tooltip("Foo", "Item-0"), "Foo");
    EXPECT_EQ(tooltip("Foo", "Item-"), "Foo");
    EXPECT_EQ(tooltip("Foo", "Item-Clock"), "Foo");
    EXPECT_EQ(tooltip("", ""), "");
}

TEST(OverflowItemTest, TooltipOfOtherNamesAddsTheDisplayName) {
    EXPECT_EQ(tooltip("Control Center", "Clock"), "Control Center — 时钟");
    EXPECT_EQ(tooltip("Foo", "Status"), "Foo — Foo");
    EXPECT_EQ(tooltip("Foo", "item-0"), "Foo — Foo");
    EXPECT_EQ(tooltip("Foo", "Item"), "Foo — Foo");
    EXPECT_EQ(tooltip("Foo", " Item-0"), "Foo — Foo");
    EXPECT_EQ(tooltip("", "Status"), " — 菜单栏项目");
    EXPECT_EQ(tooltip("Foo", "Status"), "Foo \xe2\x80\x94 Foo");
}

TEST(OverflowItemTest, FallbackSymbolsByPart) {
    EXPECT_EQ(symbol("Foo", "xWiFix"), "wifi");
    EXPECT_EQ(symbol("Foo", "Battery"), "battery.75percent");
    EXPECT_EQ(symbol("Foo", "Clock"), "clock");
    EXPECT_EQ(symbol("Foo", "AudioVideoModule"), "speaker.wave.2");
    EXPECT_EQ(symbol("Foo", "Sound"), "speaker.wave.2");
    EXPECT_EQ(symbol("Foo", "NowPlaying"), "play.circle");
    EXPECT_EQ(symbol("Foo", "TextInputMenu"), "keyboard");
    EXPECT_EQ(symbol("Foo", "输入"), "keyboard");
    EXPECT_EQ(symbol("Foo", ""), "circle.grid.2x2");
    EXPECT_EQ(symbol("", ""), "circle.grid.2x2");
}

TEST(OverflowItemTest, FallbackSymbolLooksAtTheOwnerToo) {
    EXPECT_EQ(symbol("输入法", ""), "keyboard");
    EXPECT_EQ(symbol("Display Clock", ""), "clock");
    EXPECT_EQ(symbol("Display Manager", "Item-0"), "play.circle");
    EXPECT_EQ(symbol("CLOC\u212A", ""), "clock");
    // The space between the names keeps them apart.
    EXPECT_EQ(symbol("Wi", "Fi"), "circle.grid.2x2");
}

TEST(OverflowItemTest, FallbackSymbolFollowsTheOrderOfTheTable) {
    // Each part before the next one, whichever name holds it.
    const std::vector<std::string> parts = {"wifi",  "battery", "clock", "audio",
                                            "sound", "play",    "input", "输入"};
    const std::vector<std::string> symbols = {"wifi",           "battery.75percent", "clock",
                                              "speaker.wave.2", "speaker.wave.2",    "play.circle",
                                              "keyboard",       "keyboard"};
    for (std::size_t earlier = 0; earlier < parts.size(); ++earlier) {
        for (std::size_t later = earlier + 1; later < parts.size(); ++later) {
            EXPECT_EQ(symbol(parts[later] + parts[earlier], ""), symbols[earlier]);
            EXPECT_EQ(symbol(parts[later], parts[earlier]), symbols[earlier]);
        }
    }
    EXPECT_EQ(symbol("Bar", "BatteryPlay"), "battery.75percent");
    EXPECT_EQ(symbol("Audio Clock", ""), "clock");
}

TEST(OverflowItemTest, ForeignTextsAreTolerated) {
    const std::string malformed = "\xff\xc3(\xe2\x82";
    EXPECT_EQ(displayName(malformed, malformed), malformed);
    EXPECT_EQ(tooltip(malformed, malformed), malformed + " — " + malformed);
    EXPECT_EQ(symbol(malformed, malformed), "circle.grid.2x2");
    EXPECT_EQ(symbol(malformed + "CLOCK", ""), "clock");
    const std::string zeroBytes("\0Clock\0", 7);
    EXPECT_EQ(displayName(zeroBytes, zeroBytes), zeroBytes);
    EXPECT_EQ(symbol("", zeroBytes), "clock");
    const std::string rightToLeft = "\u202Eساعة\u202C";
    EXPECT_EQ(tooltip("Foo", rightToLeft), "Foo — Foo");
}

TEST(OverflowItemTest, NamesOfAMegabyteAreTolerated) {
    std::string megabyte(1024UL * 1024, 'X');
    megabyte += "Ä";
    EXPECT_EQ(displayName(megabyte, megabyte), megabyte);
    EXPECT_EQ(tooltip("Foo", megabyte), "Foo — Foo");
    EXPECT_EQ(symbol(megabyte, megabyte + "PLAY"), "play.circle");
}

} // namespace
} // namespace pelistra::testing
