#pragma once

#include "base/Logger.h"
#include "tests/platform/Journal.h"

#include <string>
#include <string_view>
#include <vector>

namespace pelistra::testing {

struct LogLine {
    std::string subsystem;
    std::string category;
    LogLevel level = LogLevel::Info;
    std::string message;

    bool operator==(const LogLine&) const = default;
};

// Journal: "log <level>: <message>".
class FakeLogSink final : public LogSink {
public:
    explicit FakeLogSink(Journal& journal) : journal_(journal) {}

    void write(std::string_view subsystem, std::string_view category, LogLevel level,
               std::string_view message) override;

    std::vector<LogLine> lines;

private:
    Journal& journal_;
};

} // namespace pelistra::testing
