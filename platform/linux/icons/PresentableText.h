#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelistra::linux {

// No name is handed on that is longer than this many bytes; an icon's name is a few words, and
// whatever is longer is there by accident or to harm.
inline constexpr std::size_t presentableTextByteLimit = 256;

// A foreign text made fit to be shown and logged: valid UTF-8 of at most `byteLimit` bytes, cut
// between characters. A broken sequence becomes U+FFFD; control characters (line breaks
// included) become spaces; the invisible characters that reorder the text around them are dropped.
// Letters of right-to-left scripts stay as they are.
[[nodiscard]] std::string presentableText(std::string_view utf8,
                                          std::size_t byteLimit = presentableTextByteLimit);

// The same for a text in Latin-1, the encoding of window names of type STRING.
[[nodiscard]] std::string presentableLatin1(std::string_view latin1);

} // namespace pelistra::linux
