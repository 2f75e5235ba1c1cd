#include "platform/linux/FileUserDefaults.h"

#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/TemporaryFolder.h"
#include "tests/platform/FakeLogSink.h"
#include "tests/platform/FakeMainQueue.h"

#include <cstdlib>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pelistra::testing {

namespace {

using desktop::FileUserDefaults;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Optional;

class FileUserDefaultsTest : public ::testing::Test {
protected:
    [[nodiscard]] std::filesystem::path path() const {
        return folder_.path() / "pelistra" / "defaults";
    }
    [[nodiscard]] std::unique_ptr<FileUserDefaults> open() {
        return std::make_unique<FileUserDefaults>(path(), queue_, log_);
    }
    [[nodiscard]] std::string content() const { return contentOf(path()); }
    void write(const std::string& text) const {
        std::filesystem::create_directories(path().parent_path());
        std::ofstream(path()) << text;
    }
    [[nodiscard]] std::vector<std::string> messages() const {
        std::vector<std::string> result;
        for (const auto& line : log_.lines) {
            result.push_back(line.message);
        }
        return result;
    }

    TemporaryFolder folder_;
    Journal journal_;
    FakeMainQueue queue_{journal_};
    FakeLogSink log_{journal_};
};

TEST_F(FileUserDefaultsTest, BeginsEmptyAndSaysNothing) {
    const auto defaults = open();
    EXPECT_FALSE(defaults->hasObject("a"));
    EXPECT_FALSE(defaults->boolForKey("a"));
    EXPECT_EQ(defaults->numberForKey("a"), std::nullopt);
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(path()));
}

TEST_F(FileUserDefaultsTest, AValueIsThereAtOnceAndInTheFileAfterOneTurn) {
    const auto defaults = open();
    defaults->setBool(true, "flag");
    defaults->setNumber(2, "number");
    EXPECT_TRUE(defaults->boolForKey("flag"));
    EXPECT_THAT(defaults->numberForKey("number"), Optional(2.0));
    EXPECT_FALSE(std::filesystem::exists(path()));
    queue_.runUntilIdle();
    EXPECT_THAT(content(), HasSubstr("\"flag\" = true\n\"number\" = 2\n"));
}

TEST_F(FileUserDefaultsTest, WhatIsUnwrittenAtTheEndIsWritten) {
    open()->setBool(true, "flag");
    EXPECT_TRUE(open()->boolForKey("flag"));
}

TEST_F(FileUserDefaultsTest, TheFileIsPrivate) {
    open()->setBool(true, "flag");
    struct stat status{};
    ASSERT_EQ(::stat(path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
    ASSERT_EQ(::stat(path().parent_path().c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0700U);
}

TEST_F(FileUserDefaultsTest, AValueOfAnotherTypeReadsAsNone) {
    write("\"text\" = \"true\"\n\"flag\" = true\n");
    const auto defaults = open();
    EXPECT_TRUE(defaults->hasObject("text"));
    EXPECT_FALSE(defaults->boolForKey("text"));
    EXPECT_EQ(defaults->numberForKey("flag"), std::nullopt);
    EXPECT_EQ(defaults->numberForKey("text"), std::nullopt);
}

TEST_F(FileUserDefaultsTest, ANumberIsTrueWhenItIsNotZero) {
    write("\"one\" = 1\n\"half\" = 0.5\n\"less\" = -2\n\"none\" = 0\n\"never\" = -0.0\n");
    const auto defaults = open();
    for (const char* key : {"one", "half", "less"}) {
        EXPECT_TRUE(defaults->boolForKey(key)) << key;
    }
    for (const char* key : {"none", "never", "absent"}) {
        EXPECT_FALSE(defaults->boolForKey(key)) << key;
    }
}

TEST_F(FileUserDefaultsTest, ANumberThatCannotBeWrittenIsNotKept) {
    write("\"a\" = 1\n");
    const auto defaults = open();
    defaults->setNumber(std::numeric_limits<double>::quiet_NaN(), "a");
    EXPECT_EQ(queue_.waitingBlocks(), 0U);
    EXPECT_EQ(defaults->numberForKey("a"), 1);
}

TEST_F(FileUserDefaultsTest, SettingTheSameValueWritesNothing) {
    write("\"a\" = 1\n");
    const auto defaults = open();
    defaults->setNumber(1, "a");
    EXPECT_EQ(queue_.waitingBlocks(), 0U);
}

TEST_F(FileUserDefaultsTest, KeepsWhatOthersWroteMeanwhile) {
    write("\"a\" = 1\n");
    const auto defaults = open();
    write("# a note\n\"theirs\" = \"x\"\n\"a\" = 5\n");
    defaults->setNumber(2, "b");
    queue_.runUntilIdle();
    EXPECT_EQ(content(), "# a note\n\"theirs\" = \"x\"\n\"a\" = 5\n\"b\" = 2\n");
    EXPECT_THAT(defaults->numberForKey("a"), Optional(5.0));
}

TEST_F(FileUserDefaultsTest, OneDamagedLineIsOneLogLine) {
    write("\"a\" = 1\nbroken\n\"b\" = 2\n");
    const auto defaults = open();
    EXPECT_THAT(messages(), ElementsAre("Ignoring damaged line 2 of " + path().string()));
    EXPECT_EQ(log_.lines.front().level, LogLevel::Error);
    EXPECT_THAT(defaults->numberForKey("b"), Optional(2.0));
}

TEST_F(FileUserDefaultsTest, ManyDamagedLinesAreOneLogLineToo) {
    write("one\n\"a\" = 1\ntwo\nthree\n");
    const auto defaults = open();
    EXPECT_THAT(messages(), ElementsAre("Ignoring 3 damaged lines of " + path().string() +
                                        ", the first is line 1"));
}

TEST_F(FileUserDefaultsTest, ADamagedFileIsNotMadeWorse) {
    write("broken\n\"a\" = 1\n");
    open()->setNumber(2, "a");
    EXPECT_EQ(content(), "broken\n\"a\" = 2\n");
}

// A regular file where the folder should be stops every user, root included.
TEST_F(FileUserDefaultsTest, AnUnwritableFileIsOneLogLineAndTheValueStaysInMemory) {
    std::ofstream(folder_.path() / "pelistra") << "in the way";
    const auto defaults = open();
    log_.lines.clear();
    defaults->setBool(true, "flag");
    queue_.runUntilIdle();
    defaults->setNumber(1, "number");
    queue_.runUntilIdle();
    EXPECT_THAT(messages(), ElementsAre("Cannot write " + path().string() + ": Not a directory"));
    EXPECT_TRUE(defaults->boolForKey("flag"));
    EXPECT_THAT(defaults->numberForKey("number"), Optional(1.0));
}

TEST_F(FileUserDefaultsTest, WhatCouldNotBeWrittenIsWrittenWithTheNextValue) {
    const auto obstacle = folder_.path() / "pelistra";
    std::ofstream(obstacle) << "in the way";
    const auto defaults = open();
    defaults->setBool(true, "flag");
    queue_.runUntilIdle();
    std::filesystem::remove(obstacle);
    defaults->setNumber(1, "number");
    queue_.runUntilIdle();
    EXPECT_THAT(content(), AllOf(HasSubstr("\"flag\" = true"), HasSubstr("\"number\" = 1")));
}

TEST_F(FileUserDefaultsTest, SomethingElseInItsPlaceIsNotReplaced) {
    std::filesystem::create_directories(path());
    const auto defaults = open();
    defaults->setBool(true, "flag");
    queue_.runUntilIdle();
    EXPECT_TRUE(std::filesystem::is_directory(path()));
    EXPECT_THAT(messages(),
                ElementsAre("Cannot read " + path().string() + ": it is not a regular file",
                            "Cannot write " + path().string() + ": it is not a regular file"));
    EXPECT_TRUE(defaults->boolForKey("flag"));
}

TEST_F(FileUserDefaultsTest, AFileThatIsFarTooLargeIsLeftAlone) {
    write(std::string(FileUserDefaults::byteLimit + 1, '#'));
    const auto defaults = open();
    defaults->setBool(true, "flag");
    queue_.runUntilIdle();
    EXPECT_EQ(std::filesystem::file_size(path()), FileUserDefaults::byteLimit + 1);
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("it is larger than"), HasSubstr("Cannot write")));
}

TEST_F(FileUserDefaultsTest, ALinkStaysALink) {
    const auto target = folder_.path() / "elsewhere";
    std::ofstream(target) << "\"a\" = 1\n";
    std::filesystem::create_directories(path().parent_path());
    std::filesystem::create_symlink(target, path());
    open()->setNumber(2, "a");
    EXPECT_TRUE(std::filesystem::is_symlink(path()));
    EXPECT_EQ(content(), "\"a\" = 2\n");
}

class DefaultsPathTest : public ::testing::Test {
protected:
    void TearDown() override {
        ::unsetenv("XDG_CONFIG_HOME");
        ::setenv("HOME", home_.c_str(), 1);
    }

    const std::string home_ = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "/";
};

TEST_F(DefaultsPathTest, FollowsTheConventions) {
    ::setenv("HOME", "/home/someone", 1);
    ::setenv("XDG_CONFIG_HOME", "/somewhere", 1);
    EXPECT_EQ(desktop::defaultsPath(), "/somewhere/pelistra/defaults");
    ::setenv("XDG_CONFIG_HOME", "relative", 1);
    EXPECT_EQ(desktop::defaultsPath(), "/home/someone/.config/pelistra/defaults");
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(desktop::defaultsPath(), "/home/someone/.config/pelistra/defaults");
}

TEST_F(DefaultsPathTest, WithoutHomeItAsksTheSystem) {
    ::unsetenv("XDG_CONFIG_HOME");
    ::unsetenv("HOME");
    EXPECT_TRUE(desktop::defaultsPath().is_absolute());
}

} // namespace

} // namespace pelistra::testing
