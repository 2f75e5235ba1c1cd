// The settings that whoever owns the settings selection publishes: read by the bar for its theme,
// by the organiser for its look. Input: the bytes of the property; they also are taken as the
// settings that a proper manager would publish.

#include "platform/x11/XSettings.h"
#include "platform/linux/views/PublishedLook.h"
#include "tests/fuzz/Check.h"

#include <map>
#include <vector>

namespace pelistra::fuzz {
namespace {

using Bytes = std::vector<std::uint8_t>;

void putNumber(Bytes& bytes, std::uint32_t value, std::size_t size, bool bigEndian) {
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t place = bigEndian ? size - 1 - i : i;
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * place)));
    }
}

void putText(Bytes& bytes, const std::string& text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    bytes.resize((bytes.size() + 3) / 4 * 4);
}

// What a manager publishes, with a colour and a number between the texts.
Bytes published(const std::map<std::string, std::string>& texts, bool bigEndian) {
    constexpr std::uint32_t serial = 9;
    Bytes bytes{static_cast<std::uint8_t>(bigEndian ? 1 : 0), 0, 0, 0};
    putNumber(bytes, serial, 4, bigEndian);
    putNumber(bytes, static_cast<std::uint32_t>(texts.size()) + 2, 4, bigEndian);
    const auto putHead = [&](std::uint8_t type, const std::string& name) {
        bytes.push_back(type);
        bytes.push_back(0);
        putNumber(bytes, static_cast<std::uint32_t>(name.size()), 2, bigEndian);
        putText(bytes, name);
        putNumber(bytes, serial, 4, bigEndian);
    };
    putHead(2, "Color");
    bytes.resize(bytes.size() + 8);
    putHead(0, "Number");
    putNumber(bytes, 0xFFFFFFFE, 4, bigEndian);
    for (const auto& [name, text] : texts) {
        putHead(1, name);
        putNumber(bytes, static_cast<std::uint32_t>(text.size()), 4, bigEndian);
        putText(bytes, text);
    }
    return bytes;
}

void checkLook(const x11::XSettings& settings) {
    const linux::Look look = linux::lookOf(settings);
    check(look.bodySize >= 11 && look.bodySize <= 22);
    check(isClean(look.fontFamily));
    const auto* name = x11::settingNamed<std::string>(settings, "Net/ThemeName");
    check(look.isDark == (name != nullptr && x11::isDarkThemeName(*name)));
}

void checkForeign(const Bytes& bytes) {
    const x11::XSettings settings = x11::parseXSettings(bytes);
    std::size_t total = 0;
    for (const auto& [name, value] : settings) {
        const auto* text = std::get_if<std::string>(&value);
        total += name.size() + (text == nullptr ? sizeof(std::int32_t) : text->size());
    }
    check(total <= bytes.size());
    checkLook(settings);
}

void checkRoundTrip(Input input) {
    std::map<std::string, std::string> texts;
    while (!input.isEmpty()) {
        const std::uint8_t nameLength = input.byte();
        const std::uint8_t textLength = input.byte();
        std::string name = "N" + input.text(nameLength % 16);
        texts[std::move(name)] = input.text(textLength);
    }
    texts.erase("Number");
    texts["Net/ThemeName"] = "Adwaita";
    for (const bool bigEndian : {false, true}) {
        const Bytes bytes = published(texts, bigEndian);
        const x11::XSettings settings = x11::parseXSettings(bytes);
        check(settings.size() == texts.size() + 1);
        check(std::get<std::int32_t>(settings.at("Number")) == -2);
        for (const auto& [name, text] : texts) {
            check(std::get<std::string>(settings.at(name)) == text);
        }
        check(!settings.contains("Color"));
        check(x11::settingNamed<std::string>(settings, "Number") == nullptr);
        checkLook(settings);
    }
}

} // namespace
} // namespace pelistra::fuzz

void pelistra::fuzz::tryInput(Input input) {
    const std::string property = Input(input).restAsText();
    checkForeign({property.begin(), property.end()});
    checkRoundTrip(input);
}
