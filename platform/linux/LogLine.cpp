#include "platform/linux/LogLine.h"

#include <cstddef>

namespace pelistra::desktop {

namespace {

constexpr unsigned char firstPrintable = 0x20;
constexpr unsigned char deleteCharacter = 0x7f;
// U+0080 to U+009F are C2 80 to C2 9F in UTF-8.
constexpr unsigned char c1Lead = 0xc2;
constexpr unsigned char c1Last = 0x9f;

bool isControl(unsigned char byte) {
    return byte < firstPrintable || byte == deleteCharacter;
}

bool startsC1(std::string_view text, std::size_t index) {
    return static_cast<unsigned char>(text[index]) == c1Lead && index + 1 < text.size() &&
           static_cast<unsigned char>(text[index + 1]) >= 0x80 &&
           static_cast<unsigned char>(text[index + 1]) <= c1Last;
}

std::string_view nameOf(LogLevel level) {
    switch (level) {
    case LogLevel::Error:
        return "error: ";
    case LogLevel::Fault:
        return "fault: ";
    case LogLevel::Info:
        break;
    }
    return "";
}

} // namespace

std::string withoutControlCharacters(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (startsC1(text, i)) {
            result += ' ';
            ++i;
        } else {
            result += isControl(static_cast<unsigned char>(text[i])) ? ' ' : text[i];
        }
    }
    return result;
}

std::string logLine(std::string_view category, LogLevel level, std::string_view message) {
    std::string line = "pelistra: [";
    line += withoutControlCharacters(category);
    line += "] ";
    line += nameOf(level);
    line += withoutControlCharacters(message);
    line += '\n';
    return line;
}

} // namespace pelistra::desktop
