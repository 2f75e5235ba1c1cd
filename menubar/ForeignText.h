#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelistra::menubar {

// Text that a foreign program chose, made fit to be shown and logged: valid UTF-8 (a broken
// sequence becomes U+FFFD), no control characters, no characters that turn the direction of what
// follows, at most `characterLimit` characters.
[[nodiscard]] std::string cleanText(std::string_view foreign, std::size_t characterLimit);

// The same for a text in ISO 8859-1, as properties of type STRING hold it.
[[nodiscard]] std::string cleanLatinText(std::string_view foreign, std::size_t characterLimit);

} // namespace pelistra::menubar
