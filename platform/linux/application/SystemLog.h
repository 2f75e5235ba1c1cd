#pragma once

#include "base/Logger.h"

#include <string_view>

namespace pelistra::linux {

// The system log. With the journal within reach, each line becomes an entry with the fields
// PELISTRA_SUBSYSTEM and PELISTRA_CATEGORY (journalctl PELISTRA_CATEGORY=status-bar); else it is
// one plain line on standard error.
class SystemLog final : public LogSink {
public:
    // Asks the environment once where the lines go.
    SystemLog();

    void write(std::string_view subsystem, std::string_view category, LogLevel level,
               std::string_view message) override;

private:
    bool usesJournal_;
};

// Whether lines belong into the journal: standard error is connected to it (JOURNAL_STREAM names
// that very stream), or it goes nowhere that a user would look (no terminal, no file, no pipe)
// while the journal's socket is there.
[[nodiscard]] bool journalIsWanted();

} // namespace pelistra::linux
