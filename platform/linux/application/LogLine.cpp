#include "platform/linux/application/LogLine.h"

#include "platform/linux/icons/PresentableText.h"

namespace pelistra::linux {

namespace {

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
    return presentableText(text, text.max_size());
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

} // namespace pelistra::linux
