#include "platform/linux/application/LogLine.h"
#include "platform/linux/application/SystemLog.h"
#include "platform/posix/Environment.h"

#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pelistra::testing {

namespace {

using linux::logLine;
using linux::withoutControlCharacters;

TEST(LogLine, InfoStandsAlone) {
    EXPECT_EQ(logLine("status-bar", LogLevel::Info, "Expanded hidden section"),
              "pelistra: [status-bar] Expanded hidden section\n");
}

TEST(LogLine, ErrorsAndFaultsSaySo) {
    EXPECT_EQ(logLine("a", LogLevel::Error, "b"), "pelistra: [a] error: b\n");
    EXPECT_EQ(logLine("a", LogLevel::Fault, "b"), "pelistra: [a] fault: b\n");
}

TEST(LogLine, AForeignTextCannotStartALine) {
    EXPECT_EQ(logLine("a", LogLevel::Info, "x\npelistra: [a] forged\r\x1b[2J\x7f"),
              "pelistra: [a] x pelistra: [a] forged  [2J \n");
}

TEST(LogLine, ControlsOfTheUpperHalfAreReplacedAndLettersAreNot) {
    EXPECT_EQ(withoutControlCharacters("a\xc2\x9b"
                                       "31m\xc2\xa0隐藏é"),
              "a 31m\xc2\xa0隐藏é");
    EXPECT_EQ(withoutControlCharacters("\xc2"), "\uFFFD");
    EXPECT_EQ(withoutControlCharacters(std::string_view("\0x", 2)), " x");
}

TEST(LogLine, BrokenBytesAndCharactersThatTurnTheTextStayOut) {
    EXPECT_EQ(withoutControlCharacters("a\x9b"
                                       "b\u202ec\u2028d"),
              "a\uFFFDbc d");
    const std::string large(100'000, 'x');
    EXPECT_EQ(withoutControlCharacters(large), large) << "a message is not cut";
}

// Puts a descriptor in standard error's place for the time of a test.
class StandardErrorAs {
public:
    explicit StandardErrorAs(int descriptor) : saved_(::dup(STDERR_FILENO)) {
        ::dup2(descriptor, STDERR_FILENO);
        ::close(descriptor);
    }
    StandardErrorAs(const StandardErrorAs&) = delete;
    StandardErrorAs& operator=(const StandardErrorAs&) = delete;
    ~StandardErrorAs() {
        ::dup2(saved_, STDERR_FILENO);
        ::close(saved_);
    }

private:
    int saved_;
};

TEST(SystemLog, GoesToTheJournalWhenStandardErrorIsConnectedToIt) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    struct stat status{};
    ASSERT_EQ(::fstat(ends[1], &status), 0);
    const StandardErrorAs redirected(ends[1]);
    EXPECT_FALSE(linux::journalIsWanted());
    const std::string stream = std::to_string(status.st_dev) + ":" + std::to_string(status.st_ino);
    {
        const posix::Variable own("JOURNAL_STREAM", stream);
        EXPECT_TRUE(linux::journalIsWanted());
    }
    const posix::Variable another("JOURNAL_STREAM", stream + "1");
    EXPECT_FALSE(linux::journalIsWanted());
    ::close(ends[0]);
}

TEST(SystemLog, WritesOnePlainLineElsewhere) {
    std::array<int, 2> ends{};
    ASSERT_EQ(::pipe(ends.data()), 0);
    {
        const StandardErrorAs redirected(ends[1]);
        linux::SystemLog log;
        log.write("com.pelistra.app", "status-bar", LogLevel::Error, "not ready");
    }
    std::string text(64, '\0');
    const auto got = ::read(ends[0], text.data(), text.size());
    ::close(ends[0]);
    ASSERT_GT(got, 0);
    EXPECT_EQ(text.substr(0, static_cast<std::size_t>(got)),
              "pelistra: [status-bar] error: not ready\n");
}

} // namespace

} // namespace pelistra::testing
