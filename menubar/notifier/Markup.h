#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace pelistra::menubar {

// What a text in the markup of tool tips says: lines of clean text with line breaks between, none
// of them empty, at most `lineLimit` of at most `characterLimit` characters each. Tags go, those of
// paragraphs and line breaks become line breaks, character references become what they stand for;
// what is no markup stays as it is.
[[nodiscard]] std::string plainText(std::string_view markup, std::size_t characterLimit,
                                    std::size_t lineLimit);

} // namespace pelistra::menubar
