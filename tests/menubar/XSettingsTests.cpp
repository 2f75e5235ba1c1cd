#include "menubar/XSettings.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::findTextSetting;

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

TEST(XSettingsTests, FindsATextInBothByteOrders) {
    for (const bool bigEndian : {false, true}) {
        EXPECT_EQ(findTextSetting(all(bigEndian).bytes(), "Net/ThemeName"), "Adwaita-dark");
    }
}

TEST(XSettingsTests, WhatIsNotThereOrNoTextIsNotFound) {
    EXPECT_EQ(findTextSetting(all(false).bytes(), "Net/Other"), std::nullopt);
    EXPECT_EQ(findTextSetting(all(false).bytes(), "Xft/DPI"), std::nullopt);
    EXPECT_EQ(findTextSetting({}, "Net/ThemeName"), std::nullopt);
}

TEST(XSettingsTests, ATypeThatNobodyKnowsEndsTheSearch) {
    Settings settings(false);
    settings.unknown("What").text("Net/ThemeName", "Dark");
    EXPECT_EQ(findTextSetting(settings.bytes(), "Net/ThemeName"), std::nullopt);
}

TEST(XSettingsTests, EveryCutOffPropertyIsReadSafely) {
    const std::vector<std::uint8_t> whole = all(true).bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const auto found = findTextSetting(std::span(whole).first(length), "Net/ThemeName");
        EXPECT_TRUE(!found || *found == "Adwaita-dark");
    }
}

TEST(XSettingsTests, LengthsThatLieAreReadSafely) {
    const std::vector<std::uint8_t> bytes = all(false).bytes();
    for (std::size_t index = 4; index < bytes.size(); ++index) {
        std::vector<std::uint8_t> damaged = bytes;
        damaged[index] = 0xFF;
        const auto found = findTextSetting(damaged, "Net/ThemeName");
        EXPECT_TRUE(!found || found->size() <= bytes.size());
    }
}

} // namespace
} // namespace pelistra::testing
