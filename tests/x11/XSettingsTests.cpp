#include "platform/x11/XSettings.h"

#include <span>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using x11::isDarkThemeName;
using x11::parseXSettings;
using x11::settingNamed;
using x11::XSettings;

// Writes a settings property as a settings manager does.
class Settings {
public:
    explicit Settings(bool bigEndian) : bigEndian_(bigEndian) {
        bytes_ = {static_cast<std::uint8_t>(bigEndian ? 1 : 0), 0, 0, 0};
        number(7, 4);
        number(0, 4);
    }
    Settings& integer(const std::string& name, std::uint32_t value) {
        head(0, name);
        number(value, 4);
        return *this;
    }
    Settings& text(const std::string& name, const std::string& value) {
        head(1, name);
        number(static_cast<std::uint32_t>(value.size()), 4);
        padded(value);
        return *this;
    }
    Settings& color(const std::string& name) {
        head(2, name);
        number(0, 4);
        number(0, 4);
        return *this;
    }
    Settings& unknown(const std::string& name) {
        head(9, name);
        number(0, 4);
        return *this;
    }
    [[nodiscard]] std::vector<std::uint8_t> bytes() const {
        std::vector<std::uint8_t> result = bytes_;
        result[bigEndian_ ? 11 : 8] = static_cast<std::uint8_t>(count_);
        return result;
    }

private:
    void head(std::uint8_t type, const std::string& name) {
        ++count_;
        bytes_.push_back(type);
        bytes_.push_back(0);
        number(static_cast<std::uint32_t>(name.size()), 2);
        padded(name);
        number(3, 4);
    }
    void number(std::uint32_t value, int byteCount) {
        for (int i = 0; i < byteCount; ++i) {
            const int shift = 8 * (bigEndian_ ? byteCount - 1 - i : i);
            bytes_.push_back(static_cast<std::uint8_t>(value >> shift));
        }
    }
    void padded(const std::string& text) {
        bytes_.insert(bytes_.end(), text.begin(), text.end());
        bytes_.resize((bytes_.size() + 3) / 4 * 4);
    }

    bool bigEndian_;
    int count_ = 0;
    std::vector<std::uint8_t> bytes_;
};

Settings all(bool bigEndian) {
    Settings settings(bigEndian);
    settings.integer("Xft/DPI", 98304).color("Some/Color").text("Net/IconThemeName", "x");
    settings.text("Net/ThemeName", "Adwaita-dark").integer("Last", 1);
    return settings;
}

TEST(XSettingsTests, ReadsNumbersAndTextsInBothByteOrders) {
    for (const bool bigEndian : {false, true}) {
        const XSettings settings = parseXSettings(all(bigEndian).bytes());
        EXPECT_EQ(settings, (XSettings{{"Xft/DPI", 98304},
                                       {"Net/IconThemeName", std::string("x")},
                                       {"Net/ThemeName", std::string("Adwaita-dark")},
                                       {"Last", 1}}));
    }
}

TEST(XSettingsTests, ASettingIsFoundByItsNameAndType) {
    const XSettings settings = parseXSettings(all(false).bytes());
    const auto* const name = settingNamed<std::string>(settings, "Net/ThemeName");
    ASSERT_NE(name, nullptr);
    EXPECT_EQ(*name, "Adwaita-dark");
    EXPECT_EQ(settingNamed<std::string>(settings, "Net/Other"), nullptr);
    EXPECT_EQ(settingNamed<std::string>(settings, "Xft/DPI"), nullptr);
    EXPECT_EQ(settingNamed<std::int32_t>(settings, "Net/ThemeName"), nullptr);
    EXPECT_TRUE(parseXSettings({}).empty());
}

TEST(XSettingsTests, ATypeThatNobodyKnowsEndsTheList) {
    Settings settings(false);
    settings.integer("First", 2).unknown("What").text("Net/ThemeName", "Dark");
    EXPECT_EQ(parseXSettings(settings.bytes()), (XSettings{{"First", 2}}));
}

TEST(XSettingsTests, EndsWhereTheBytesAreCut) {
    const std::vector<std::uint8_t> whole = all(true).bytes();
    const XSettings complete = parseXSettings(whole);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const XSettings settings = parseXSettings(std::span(whole).first(length));
        EXPECT_LT(settings.size(), complete.size());
        for (const auto& [name, value] : settings) {
            ASSERT_TRUE(complete.contains(name)) << name;
            EXPECT_EQ(value, complete.at(name)) << name;
        }
    }
}

TEST(XSettingsTests, ClaimsBeyondTheEndAreRefused) {
    const std::vector<std::uint8_t> bytes = {0,    0,    0, 0, 0,    0,    0, 0, 0xFF, 0xFF,
                                             0xFF, 0xFF, 1, 0, 0xFF, 0xFF, 0, 0, 0,    0};
    EXPECT_TRUE(parseXSettings(bytes).empty());
}

TEST(XSettingsTests, LengthsThatLieAreReadSafely) {
    const std::vector<std::uint8_t> bytes = all(false).bytes();
    for (std::size_t index = 4; index < bytes.size(); ++index) {
        std::vector<std::uint8_t> damaged = bytes;
        damaged[index] = 0xFF;
        std::size_t total = 0;
        for (const auto& [name, value] : parseXSettings(damaged)) {
            const auto* const text = std::get_if<std::string>(&value);
            total += name.size() + (text != nullptr ? text->size() : sizeof(std::int32_t));
        }
        EXPECT_LE(total, bytes.size());
    }
}

TEST(XSettingsTests, DarkThemesAreKnownByTheirNames) {
    for (const char* name : {"Adwaita-dark", "Yaru-Dark", "Darkly", "arc-DARKER"}) {
        EXPECT_TRUE(isDarkThemeName(name)) << name;
    }
    for (const char* name : {"", "Adwaita", "Raleigh"}) {
        EXPECT_FALSE(isDarkThemeName(name)) << name;
    }
}

} // namespace
} // namespace pelistra::testing
