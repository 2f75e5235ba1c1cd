#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pelistra::menubar {

// The value of a text setting in a _XSETTINGS_SETTINGS property; empty when there is none of that
// name or the property is damaged before it.
[[nodiscard]] std::optional<std::string> findTextSetting(std::span<const std::uint8_t> settings,
                                                         std::string_view name);

} // namespace pelistra::menubar
