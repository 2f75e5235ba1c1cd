#include "platform/linux/application/SystemLog.h"

#include "platform/linux/application/LogLine.h"

#include <array>
#include <cerrno>
#include <cstdlib>

#include <sys/stat.h>
#include <sys/uio.h>
#include <syslog.h>
#include <unistd.h>

// The journal's source locations would name this file for every line.
#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

namespace pelistra::linux {

namespace {

constexpr auto journalSocket = "/run/systemd/journal/socket";

int priorityOf(LogLevel level) {
    switch (level) {
    case LogLevel::Error:
        return LOG_ERR;
    case LogLevel::Fault:
        return LOG_CRIT;
    case LogLevel::Info:
        break;
    }
    return LOG_INFO;
}

iovec fieldOf(std::string& field) {
    return {.iov_base = field.data(), .iov_len = field.size()};
}

bool sendToJournal(std::string_view subsystem, std::string_view category, LogLevel level,
                   std::string_view message) {
    std::string text = "MESSAGE=" + withoutControlCharacters(message);
    std::string priority = "PRIORITY=" + std::to_string(priorityOf(level));
    std::string identifier = "SYSLOG_IDENTIFIER=pelistra";
    std::string inSubsystem = "PELISTRA_SUBSYSTEM=" + withoutControlCharacters(subsystem);
    std::string inCategory = "PELISTRA_CATEGORY=" + withoutControlCharacters(category);
    const std::array fields{fieldOf(text), fieldOf(priority), fieldOf(identifier),
                            fieldOf(inSubsystem), fieldOf(inCategory)};
    return sd_journal_sendv(fields.data(), static_cast<int>(fields.size())) == 0;
}

void writeToStandardError(std::string_view line) {
    while (!line.empty()) {
        const ssize_t written = ::write(STDERR_FILENO, line.data(), line.size());
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return;
        }
        line.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace

bool journalIsWanted() {
    struct stat standardError{};
    if (::fstat(STDERR_FILENO, &standardError) != 0) {
        return ::access(journalSocket, W_OK) == 0;
    }
    const char* stream = std::getenv("JOURNAL_STREAM");
    if (stream != nullptr &&
        std::to_string(standardError.st_dev) + ":" + std::to_string(standardError.st_ino) ==
            stream) {
        return true;
    }
    const bool isNullDevice = S_ISCHR(standardError.st_mode) && ::isatty(STDERR_FILENO) == 0;
    return isNullDevice && ::access(journalSocket, W_OK) == 0;
}

SystemLog::SystemLog() : usesJournal_(journalIsWanted()) {}

void SystemLog::write(std::string_view subsystem, std::string_view category, LogLevel level,
                      std::string_view message) {
    if (!usesJournal_ || !sendToJournal(subsystem, category, level, message)) {
        writeToStandardError(logLine(category, level, message));
    }
}

} // namespace pelistra::linux
