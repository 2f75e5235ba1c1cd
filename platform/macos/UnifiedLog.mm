#include "platform/macos/UnifiedLog.h"

#include <algorithm>

namespace pelistra::macos {

namespace {

os_log_type_t logType(LogLevel level) {
    switch (level) {
    case LogLevel::Error:
        return OS_LOG_TYPE_ERROR;
    case LogLevel::Fault:
        return OS_LOG_TYPE_FAULT;
    case LogLevel::Info:
        break;
    }
    return OS_LOG_TYPE_INFO;
}

// A record of the log may hold line breaks, a terminal that shows it should not.
std::string oneLine(std::string_view message) {
    std::string line(message);
    std::ranges::replace_if(
        line, [](unsigned char byte) { return byte < 0x20 || byte == 0x7f; }, ' ');
    return line;
}

} // namespace

os_log_t UnifiedLog::logFor(std::string_view subsystem, std::string_view category) {
    auto& log = logs_[{std::string(subsystem), std::string(category)}];
    if (!log) {
        log = Owned<os_log_t>::adopt(
            os_log_create(std::string(subsystem).c_str(), std::string(category).c_str()));
    }
    return log.get();
}

void UnifiedLog::write(std::string_view subsystem, std::string_view category, LogLevel level,
                       std::string_view message) {
    os_log_t log = logFor(subsystem, category);
    os_log_with_type(log, logType(level), "%{public}s", oneLine(message).c_str());
}

} // namespace pelistra::macos
