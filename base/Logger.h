#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace pelistra {

enum class LogLevel { Info, Error, Fault };

// Where log lines go: the system log of the platform.
class LogSink {
public:
    LogSink() = default;
    LogSink(const LogSink&) = delete;
    LogSink& operator=(const LogSink&) = delete;
    virtual ~LogSink() = default;

    // Writes one line. `message` holds no line break that the sink would have to keep: sinks
    // replace control characters, so that a foreign text can never start a line of its own.
    virtual void write(std::string_view subsystem, std::string_view category, LogLevel level,
                       std::string_view message) = 0;
};

// One component's logger: a subsystem and a category, written to a sink. A small value.
class Logger {
public:
    // The subsystem under which everything of this product is logged.
    static constexpr std::string_view subsystem = "com.pelistra.app";

    Logger(LogSink& sink, std::string category) : sink_(&sink), category_(std::move(category)) {}

    void info(std::string_view message) const { write(LogLevel::Info, message); }
    void error(std::string_view message) const { write(LogLevel::Error, message); }
    void fault(std::string_view message) const { write(LogLevel::Fault, message); }

private:
    void write(LogLevel level, std::string_view message) const {
        sink_->write(subsystem, category_, level, message);
    }

    LogSink* sink_;
    std::string category_;
};

} // namespace pelistra
