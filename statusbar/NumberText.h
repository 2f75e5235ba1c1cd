#pragma once

#include <string>
#include <string_view>

namespace pelistra {

// Six digits after the point, whatever the locale: 3024.000000.
std::string fixedText(double value);

// The shortest decimal text that reads back as the same value, always with a fractional part:
// 3024.0, 0.1, -1.0.
std::string shortestDecimalText(double value);

// true or false.
std::string_view booleanText(bool value);

} // namespace pelistra
