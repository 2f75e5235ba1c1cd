#pragma once

#include "platform/Logger.h"

#include <string>
#include <string_view>

namespace pelistra::desktop {

// The text with every control character (line breaks, escapes, C1 controls as UTF-8) replaced by a
// space, so that a foreign text can neither start a line of its own nor steer a terminal.
[[nodiscard]] std::string withoutControlCharacters(std::string_view text);

// One line for standard error, its line break included: "pelistra: [category] message", with the
// level before the message when it is not info.
[[nodiscard]] std::string logLine(std::string_view category, LogLevel level,
                                  std::string_view message);

} // namespace pelistra::desktop
