#include "tests/platform/FakeLogSink.h"

namespace pelistra::testing {
namespace {

std::string_view nameOf(LogLevel level) {
    switch (level) {
    case LogLevel::Info:
        return "info";
    case LogLevel::Error:
        return "error";
    case LogLevel::Fault:
        return "fault";
    }
    return "unknown";
}

} // namespace

void FakeLogSink::write(std::string_view subsystem, std::string_view category, LogLevel level,
                        std::string_view message) {
    lines.push_back({.subsystem = std::string(subsystem),
                     .category = std::string(category),
                     .level = level,
                     .message = std::string(message)});
    journal_.note("log " + std::string(nameOf(level)) + ": " + std::string(message));
}

} // namespace pelistra::testing
