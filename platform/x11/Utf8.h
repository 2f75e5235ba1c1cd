#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelistra::x11 {

// Texts of other programs, character by character: what claims to be UTF-8 may be anything.

// Stands for bytes that are no character (U+FFFD).
inline constexpr char32_t replacementCharacter = 0xFFFD;

struct Decoded {
    char32_t character = replacementCharacter;
    // How many bytes it takes; never 0.
    std::size_t length = 1;
};

// The first character of a text that is not empty. A sequence that is cut off, overlong, a
// surrogate or beyond the last character counts as one replacement character.
[[nodiscard]] Decoded firstCharacter(std::string_view text);

// Appends a character, which must be one that Unicode has.
void appendCharacter(std::string& text, char32_t character);

// A text in ISO 8859-1, as properties of type STRING hold it, in UTF-8.
[[nodiscard]] std::string fromLatin1(std::string_view latin1);

// Whether it is a control character (C0, C1 or delete) or separates lines or paragraphs.
[[nodiscard]] bool isControl(char32_t character);

// Whether it turns the direction of the text around it: the marks, embeddings, overrides and
// isolates of the bidirectional algorithm. Letters of right-to-left scripts do not.
[[nodiscard]] bool isReordering(char32_t character);

} // namespace pelistra::x11
