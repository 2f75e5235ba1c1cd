#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace pelistra::x11 {

// What a desktop publishes for the programs on an X display, by name: numbers and texts. Colours
// are left out.
using XSettings = std::map<std::string, std::variant<std::int32_t, std::string>, std::less<>>;

// Reads the bytes of the property _XSETTINGS_SETTINGS, in either byte order; what cannot be read
// ends the list. Texts are as they were published: foreign bytes.
[[nodiscard]] XSettings parseXSettings(std::span<const std::uint8_t> bytes);

// The setting of that name; null when there is none or it is of another type.
template <class Value>
[[nodiscard]] const Value* settingNamed(const XSettings& settings, std::string_view name) {
    const auto found = settings.find(name);
    return found != settings.end() ? std::get_if<Value>(&found->second) : nullptr;
}

// Whether the setting Net/ThemeName names a dark theme; no desktop says so in any other way.
[[nodiscard]] bool isDarkThemeName(std::string_view name);

} // namespace pelistra::x11
