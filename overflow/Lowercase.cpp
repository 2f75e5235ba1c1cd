#include "overflow/Lowercase.h"

#include <cstddef>

namespace pelistra {

namespace {

// The only characters beyond ASCII whose lower-case form begins with a letter of ASCII.
constexpr std::string_view kelvinSign = "\u212a";
constexpr std::string_view dottedCapitalI = "\u0130";
constexpr std::string_view lowerDottedCapitalI = "i\u0307";

char asciiLowercased(char byte) {
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

} // namespace

std::string lowercased(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        std::size_t length = 1;
        if (text.starts_with(kelvinSign)) {
            result += 'k';
            length = kelvinSign.size();
        } else if (text.starts_with(dottedCapitalI)) {
            result += lowerDottedCapitalI;
            length = dottedCapitalI.size();
        } else {
            result += asciiLowercased(text.front());
        }
        text.remove_prefix(length);
    }
    return result;
}

} // namespace pelistra
