#include "platform/linux/views/XSettings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace pelistra::desktop {
namespace {

// Writes a settings property as a manager does, in little-endian order.
class Bytes {
public:
    Bytes& number(std::uint32_t value, int size) {
        for (int place = 0; place < size; ++place) {
            bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * place)));
        }
        return *this;
    }
    Bytes& text(const std::string& text) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        while (bytes_.size() % 4 != 0) {
            bytes_.push_back(0);
        }
        return *this;
    }
    Bytes& header(std::uint32_t count) { return number(0, 4).number(7, 4).number(count, 4); }
    Bytes& setting(const std::string& name, const std::string& value) {
        number(1, 1).number(0, 1).number(static_cast<std::uint32_t>(name.size()), 2);
        return text(name)
            .number(0, 4)
            .number(static_cast<std::uint32_t>(value.size()), 4)
            .text(value);
    }
    Bytes& setting(const std::string& name, std::int32_t value) {
        number(0, 1).number(0, 1).number(static_cast<std::uint32_t>(name.size()), 2);
        return text(name).number(0, 4).number(static_cast<std::uint32_t>(value), 4);
    }
    [[nodiscard]] const std::vector<std::uint8_t>& get() const { return bytes_; }

private:
    std::vector<std::uint8_t> bytes_;
};

TEST(XSettingsTest, ReadsNumbersAndTexts) {
    Bytes bytes;
    bytes.header(2).setting("Net/ThemeName", "Orchis-Dark").setting("Gtk/EnableAnimations", 0);
    const XSettings settings = parseXSettings(bytes.get());
    EXPECT_EQ(std::get<std::string>(settings.at("Net/ThemeName")), "Orchis-Dark");
    EXPECT_EQ(std::get<std::int32_t>(settings.at("Gtk/EnableAnimations")), 0);
}

TEST(XSettingsTest, EndsWhereTheBytesAreCut) {
    Bytes bytes;
    bytes.header(2).setting("Gtk/EnableAnimations", 0).setting("Net/ThemeName", "Orchis-Dark");
    for (std::size_t length = 0; length < bytes.get().size(); ++length) {
        EXPECT_LT(parseXSettings(std::span(bytes.get()).first(length)).size(), 2U);
    }
    EXPECT_EQ(parseXSettings(bytes.get()).size(), 2U);
}

TEST(XSettingsTest, ClaimsBeyondTheEndAreRefused) {
    Bytes bytes;
    bytes.header(0xFFFFFFFF).number(1, 1).number(0, 1).number(0xFFFF, 2).number(0, 4);
    EXPECT_TRUE(parseXSettings(bytes.get()).empty());
}

TEST(XSettingsTest, ADarkThemeMakesADarkLook) {
    EXPECT_TRUE(lookOf({{"Net/ThemeName", std::string("Adwaita-dark")}}).isDark);
    EXPECT_FALSE(lookOf({{"Net/ThemeName", std::string("Adwaita")}}).isDark);
    EXPECT_FALSE(lookOf({}).isDark);
}

TEST(XSettingsTest, SwitchedOffAnimationsReduceMotion) {
    EXPECT_TRUE(lookOf({{"Gtk/EnableAnimations", 0}}).reduceMotion);
    EXPECT_FALSE(lookOf({{"Gtk/EnableAnimations", 1}}).reduceMotion);
    EXPECT_FALSE(lookOf({}).reduceMotion);
}

TEST(XSettingsTest, TheDesktopsFontGivesFamilyAndBodySize) {
    const Look usual = lookOf({{"Gtk/FontName", std::string("Noto Sans 10")}});
    EXPECT_EQ(usual.fontFamily, "Noto Sans");
    EXPECT_DOUBLE_EQ(usual.bodySize, 13);
    EXPECT_DOUBLE_EQ(lookOf({{"Gtk/FontName", std::string("Noto Sans 14")}}).bodySize, 18.2);
    EXPECT_DOUBLE_EQ(lookOf({{"Gtk/FontName", std::string("Noto Sans 999")}}).bodySize, 22);
    EXPECT_EQ(lookOf({{"Gtk/FontName", std::string("Noto Sans")}}).fontFamily, "Noto Sans");
}

TEST(XSettingsTest, AFontThatIsNoTextBecomesOne) {
    const Look look = lookOf({{"Gtk/FontName", std::string("No\nto\xff 1e9999")}});
    EXPECT_EQ(look.fontFamily, "No to\uFFFD 1e9999");
    EXPECT_DOUBLE_EQ(look.bodySize, 13);
    EXPECT_LE(lookOf({{"Gtk/FontName", std::string(60'000, 'x')}}).fontFamily.size(), 256U);
}

} // namespace
} // namespace pelistra::desktop
