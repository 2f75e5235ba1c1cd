#pragma once

#include "base/Logger.h"

#include <string>
#include <string_view>

namespace pelistra::linux {

// The text in valid UTF-8 with every control character (line breaks, escapes, C1 controls) replaced
// by a space, so that a foreign text can neither start a line of its own nor steer a terminal, nor
// turn the direction of what is written behind it.
[[nodiscard]] std::string withoutControlCharacters(std::string_view text);

// One line for standard error, its line break included: "pelistra: [category] message", with the
// level before the message when it is not info.
[[nodiscard]] std::string logLine(std::string_view category, LogLevel level,
                                  std::string_view message);

} // namespace pelistra::linux
