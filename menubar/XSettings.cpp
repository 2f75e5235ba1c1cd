#include "menubar/XSettings.h"

#include <cstddef>

namespace pelistra::menubar {

namespace {

enum class SettingType : std::uint8_t { Integer = 0, Text = 1, Color = 2 };

// Reads numbers and texts from front to back; after a read beyond the end it stays failed.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    [[nodiscard]] bool failed() const { return failed_; }
    void setBigEndian(bool big) { bigEndian_ = big; }

    std::span<const std::uint8_t> take(std::size_t count) {
        if (count > bytes_.size()) {
            failed_ = true;
            bytes_ = {};
            return {};
        }
        const auto taken = bytes_.first(count);
        bytes_ = bytes_.subspan(count);
        return taken;
    }

    std::uint32_t number(std::size_t byteCount) {
        std::uint32_t value = 0;
        const auto taken = take(byteCount);
        for (std::size_t i = 0; i < taken.size(); ++i) {
            value = (value << 8U) | taken[bigEndian_ ? i : taken.size() - 1 - i];
        }
        return value;
    }

    // A text and the bytes that fill it up to a multiple of four.
    std::string_view paddedText(std::size_t length) {
        const auto taken = take(length);
        constexpr std::size_t unit = 4;
        take((unit - length % unit) % unit);
        return {reinterpret_cast<const char*>(taken.data()), // NOLINT(*-reinterpret-cast)
                taken.size()};
    }

private:
    std::span<const std::uint8_t> bytes_;
    bool bigEndian_ = false;
    bool failed_ = false;
};

struct Setting {
    std::string_view name;
    std::optional<std::string> text;
};

// One setting; the reader fails at the end of the property or at a type that nobody defined.
Setting readSetting(Reader& reader) {
    constexpr std::size_t colorBytes = 8;
    const auto type = static_cast<SettingType>(reader.number(1));
    reader.take(1);
    Setting setting;
    setting.name = reader.paddedText(reader.number(2));
    reader.number(4); // The serial of its last change.
    switch (type) {
    case SettingType::Integer:
        reader.number(4);
        break;
    case SettingType::Text:
        setting.text = std::string(reader.paddedText(reader.number(4)));
        break;
    case SettingType::Color:
        reader.take(colorBytes);
        break;
    default:
        reader.take(SIZE_MAX);
    }
    return setting;
}

} // namespace

std::optional<std::string> findTextSetting(std::span<const std::uint8_t> settings,
                                           std::string_view name) {
    Reader reader(settings);
    reader.setBigEndian(reader.number(1) == 1);
    reader.take(3);
    reader.number(4); // The serial of the whole.
    const std::uint32_t count = reader.number(4);
    for (std::uint32_t i = 0; i < count && !reader.failed(); ++i) {
        const Setting setting = readSetting(reader);
        if (!reader.failed() && setting.name == name) {
            return setting.text;
        }
    }
    return std::nullopt;
}

} // namespace pelistra::menubar
