#pragma once

#include "base/Logger.h"
#include "platform/macos/Owned.h"

#include <os/log.h>

#include <map>
#include <string>
#include <utility>

namespace pelistra::macos {

// The unified system log. Messages are logged whole as public values.
class UnifiedLog final : public LogSink {
public:
    void write(std::string_view subsystem, std::string_view category, LogLevel level,
               std::string_view message) override;

private:
    [[nodiscard]] os_log_t logFor(std::string_view subsystem, std::string_view category);

    std::map<std::pair<std::string, std::string>, Owned<os_log_t>> logs_;
};

} // namespace pelistra::macos
