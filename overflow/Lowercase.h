#pragma once

#include <string>
#include <string_view>

namespace pelistra {

// The text with every character in lower case: the Unicode Standard's full, language-independent
// lower-casing (final sigma and mappings to several characters included). Bytes that are no valid
// UTF-8 stay as they are.
[[nodiscard]] std::string lowercased(std::string_view text);

} // namespace pelistra
