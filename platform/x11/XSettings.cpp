#include "platform/x11/XSettings.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <utility>

namespace pelistra::x11 {

namespace {

constexpr std::uint8_t numberType = 0;
constexpr std::uint8_t textType = 1;
constexpr std::uint8_t colorType = 2;
constexpr std::size_t colorBytes = 8;
constexpr std::uint8_t bigEndian = 1;

// Reads numbers and texts one after the other; everything is empty once the end has been passed.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    void setBigEndian(bool isBigEndian) { isBigEndian_ = isBigEndian; }
    [[nodiscard]] bool hasFailed() const { return hasFailed_; }

    std::uint32_t number(std::size_t size) {
        const auto part = take(size);
        std::uint32_t value = 0;
        for (std::size_t place = 0; place < part.size(); ++place) {
            constexpr unsigned bitsPerByte = 8;
            const std::size_t from = isBigEndian_ ? place : part.size() - 1 - place;
            value = (value << bitsPerByte) | part[from];
        }
        return value;
    }

    // Texts are filled up to a multiple of four bytes.
    std::string text(std::size_t size) {
        const auto part = take(size);
        constexpr std::size_t unit = 4;
        (void)take((unit - (size % unit)) % unit);
        return {part.begin(), part.end()};
    }

    void skip(std::size_t size) { (void)take(size); }

private:
    std::span<const std::uint8_t> take(std::size_t size) {
        if (hasFailed_ || size > bytes_.size()) {
            hasFailed_ = true;
            return {};
        }
        const auto part = bytes_.first(size);
        bytes_ = bytes_.subspan(size);
        return part;
    }

    std::span<const std::uint8_t> bytes_;
    bool isBigEndian_ = false;
    bool hasFailed_ = false;
};

// One setting; false when the list ends here.
bool readSetting(Reader& reader, XSettings& settings) {
    const std::uint32_t type = reader.number(1);
    reader.skip(1);
    std::string name = reader.text(reader.number(2));
    reader.skip(4);
    if (type == numberType) {
        const auto value = static_cast<std::int32_t>(reader.number(4));
        if (!reader.hasFailed()) {
            settings.insert_or_assign(std::move(name), value);
        }
    } else if (type == textType) {
        std::string value = reader.text(reader.number(4));
        if (!reader.hasFailed()) {
            settings.insert_or_assign(std::move(name), std::move(value));
        }
    } else if (type == colorType) {
        reader.skip(colorBytes);
    } else {
        return false;
    }
    return !reader.hasFailed();
}

} // namespace

XSettings parseXSettings(std::span<const std::uint8_t> bytes) {
    XSettings settings;
    Reader reader(bytes);
    reader.setBigEndian(reader.number(1) == bigEndian);
    constexpr std::size_t restOfHeader = 3 + 4;
    reader.skip(restOfHeader);
    std::uint32_t left = reader.number(4);
    while (!reader.hasFailed() && left > 0 && readSetting(reader, settings)) {
        --left;
    }
    return settings;
}

bool isDarkThemeName(std::string_view name) {
    std::string lower(name);
    std::ranges::transform(lower, lower.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    return lower.find("dark") != std::string::npos;
}

} // namespace pelistra::x11
