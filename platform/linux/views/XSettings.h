#pragma once

#include "platform/linux/views/Look.h"

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <variant>

namespace pelistra::desktop {

// What a desktop publishes for the programs on an X display, by name: numbers and texts. Colours
// are left out.
using XSettings = std::map<std::string, std::variant<std::int32_t, std::string>, std::less<>>;

// Reads the bytes of the settings property; what cannot be read ends the list.
[[nodiscard]] XSettings parseXSettings(std::span<const std::uint8_t> bytes);

// The look that the settings ask for: a theme whose name says that it is dark, animations switched
// off, and the desktop's font.
[[nodiscard]] Look lookOf(const XSettings& settings);

} // namespace pelistra::desktop
