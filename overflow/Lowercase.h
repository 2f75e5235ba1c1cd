#pragma once

#include <string>
#include <string_view>

namespace pelistra {

// The text with every character in lower case whose lower-case form has a letter of ASCII in it;
// all others stay as they are. Equal to full Unicode lower-casing for whoever looks in the result
// for texts of ASCII letters and of characters without case. Takes any bytes.
[[nodiscard]] std::string lowercased(std::string_view text);

} // namespace pelistra
