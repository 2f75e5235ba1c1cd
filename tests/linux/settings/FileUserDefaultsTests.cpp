#include "platform/linux/settings/FileUserDefaults.h"

#include "platform/posix/Environment.h"
#include "tests/contract/UserDefaultsContract.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/TemporaryFolder.h"
#include "tests/platform/FakeLogSink.h"
#include "tests/platform/FakeMainQueue.h"

#include <fstream>
#include <limits>
#include <memory>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pelistra::testing {

namespace {

using linux::FileUserDefaults;
using ::testing::AllOf;
using ::testing::AnyOf;
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
        std::ofstream(path()) << "[Defaults]\n" << text;
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
    EXPECT_THAT(content(), HasSubstr("flag=true\nnumber=2\n"));
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
    write("text=yes\nflag=true\nbroken=1x\n");
    const auto defaults = open();
    EXPECT_TRUE(defaults->hasObject("text"));
    EXPECT_FALSE(defaults->boolForKey("text"));
    EXPECT_FALSE(defaults->boolForKey("broken"));
    EXPECT_EQ(defaults->numberForKey("flag"), std::nullopt);
    EXPECT_EQ(defaults->numberForKey("text"), std::nullopt);
    EXPECT_EQ(defaults->numberForKey("broken"), std::nullopt);
}

TEST_F(FileUserDefaultsTest, ANumberIsTrueWhenItIsNotZero) {
    write("one=1\nhalf=0.5\nless=-2\nnone=0\nnever=-0.0\n");
    const auto defaults = open();
    for (const char* key : {"one", "half", "less"}) {
        EXPECT_TRUE(defaults->boolForKey(key)) << key;
    }
    for (const char* key : {"none", "never", "absent"}) {
        EXPECT_FALSE(defaults->boolForKey(key)) << key;
    }
}

TEST_F(FileUserDefaultsTest, EveryNumberComesBackAsItWas) {
    for (const double number : {0.1, -3.0, 1e300, std::numeric_limits<double>::denorm_min()}) {
        open()->setNumber(number, "a");
        EXPECT_EQ(open()->numberForKey("a"), number);
    }
}

TEST_F(FileUserDefaultsTest, ANumberThatCannotBeWrittenIsNotKept) {
    write("a=1\n");
    const auto defaults = open();
    defaults->setNumber(std::numeric_limits<double>::quiet_NaN(), "a");
    EXPECT_EQ(queue_.waitingBlocks(), 0U);
    EXPECT_EQ(defaults->numberForKey("a"), 1);
}

TEST_F(FileUserDefaultsTest, SettingTheSameValueWritesNothing) {
    write("a=1\n");
    const auto defaults = open();
    defaults->setNumber(1, "a");
    EXPECT_EQ(queue_.waitingBlocks(), 0U);
}

TEST_F(FileUserDefaultsTest, NothingOfVersion010IsLost) {
    const std::string first = "# What Pelistra remembers. One value a line: \"key\" = value.\n"
                              "\"NSStatusItem Preferred Position PelistraV3.Control\" = 3\n"
                              "\"NSStatusItem Visible PelistraV3.Control\" = true\n"
                              "\"hasCompletedOnboarding.0.1.0\" = true\n"
                              "\"a \\\"text\\\" [of = others]\" = \"x\\\\y\"\r\n\n";
    std::filesystem::create_directories(path().parent_path());
    std::ofstream(path()) << first;
    open()->setBool(true, "hasCompletedOnboarding.0.2.0");
    const auto defaults = open();
    EXPECT_THAT(defaults->numberForKey("NSStatusItem Preferred Position PelistraV3.Control"),
                Optional(3.0));
    for (const char* key : {"NSStatusItem Visible PelistraV3.Control",
                            "hasCompletedOnboarding.0.1.0", "hasCompletedOnboarding.0.2.0"}) {
        EXPECT_TRUE(defaults->boolForKey(key)) << key;
    }
    EXPECT_TRUE(defaults->hasObject("a \"text\" [of = others]"));
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(path().string() + ".damaged"));
}

TEST_F(FileUserDefaultsTest, AHalfWrittenFileOfVersion010IsKeptAside) {
    std::filesystem::create_directories(path().parent_path());
    std::ofstream(path()) << "\"flag\" = true\n\"number\n";
    EXPECT_FALSE(open()->hasObject("flag"));
    EXPECT_TRUE(std::filesystem::exists(path().string() + ".damaged"));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("is damaged")));
}

TEST_F(FileUserDefaultsTest, CarriageReturnsAtTheEndOfALineBelongToNoValue) {
    write("theirs=x\r\r\nlast=y\r\r");
    open()->setNumber(1, "a");
    queue_.runUntilIdle();
    EXPECT_EQ(content(), "[Defaults]\ntheirs=x\nlast=y\na=1\n");
}

TEST_F(FileUserDefaultsTest, KeepsWhatOthersWroteMeanwhile) {
    write("a=1\n");
    const auto defaults = open();
    write("# a note\n\ntheirs=x\na=5\n[Others]\n# another\nb=1\n");
    defaults->setNumber(2, "b");
    queue_.runUntilIdle();
    // Older versions of GLib part groups by an empty line, newer ones do not.
    EXPECT_THAT(content(),
                AnyOf("[Defaults]\n# a note\n\ntheirs=x\na=5\nb=2\n\n[Others]\n# another\nb=1\n",
                      "[Defaults]\n# a note\n\ntheirs=x\na=5\nb=2\n[Others]\n# another\nb=1\n"));
    EXPECT_THAT(defaults->numberForKey("a"), Optional(5.0));
}

TEST_F(FileUserDefaultsTest, ADamagedFileIsKeptAsideAndSaid) {
    for (const std::string& damaged :
         {std::string("a=1\nbroken\nb=2\n"), std::string("a=1\0b=2\n", 8), std::string("=1\n")}) {
        log_.lines.clear();
        write(damaged);
        const auto defaults = open();
        EXPECT_THAT(messages(),
                    ElementsAre(HasSubstr(path().string() + " is damaged and now kept as " +
                                          path().string() + ".damaged: ")));
        EXPECT_EQ(log_.lines.front().level, LogLevel::Error);
        EXPECT_FALSE(defaults->hasObject("a"));
        EXPECT_EQ(contentOf(path().string() + ".damaged"), "[Defaults]\n" + damaged);
        defaults->setNumber(2, "b");
        queue_.runUntilIdle();
        EXPECT_EQ(content(), "[Defaults]\nb=2\n");
    }
}

// Somebody else damages it while the program runs.
TEST_F(FileUserDefaultsTest, AFileThatIsDamagedLaterIsKeptAsideToo) {
    write("a=1\n");
    const auto defaults = open();
    write("broken\n");
    defaults->setNumber(2, "b");
    queue_.runUntilIdle();
    EXPECT_EQ(content(), "[Defaults]\nb=2\n");
    EXPECT_EQ(contentOf(path().string() + ".damaged"), "[Defaults]\nbroken\n");
    EXPECT_EQ(messages().size(), 1U);
}

TEST_F(FileUserDefaultsTest, ADamagedFileThatCannotBeKeptAsideStays) {
    write("broken\n");
    std::filesystem::create_directories(path().string() + ".damaged/in the way");
    const auto defaults = open();
    defaults->setNumber(2, "b");
    queue_.runUntilIdle();
    EXPECT_EQ(content(), "[Defaults]\nbroken\n");
    EXPECT_THAT(defaults->numberForKey("b"), Optional(2.0));
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("Cannot read"), HasSubstr("Cannot write")));
}

TEST_F(FileUserDefaultsTest, TakesAnyBytes) {
    for (int first = 0; first < 256; ++first) {
        std::string bytes;
        for (int i = 0; i < 256; ++i) {
            bytes += static_cast<char>((first + i) % 256);
        }
        write(bytes);
        open()->setNumber(first, "a");
        EXPECT_THAT(open()->numberForKey("a"), Optional(double{1} * first));
    }
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
    EXPECT_THAT(content(), AllOf(HasSubstr("flag=true"), HasSubstr("number=1")));
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
    write(std::string(FileUserDefaults::byteLimit, '#'));
    const auto defaults = open();
    defaults->setBool(true, "flag");
    queue_.runUntilIdle();
    EXPECT_GT(std::filesystem::file_size(path()), FileUserDefaults::byteLimit);
    EXPECT_THAT(messages(), ElementsAre(HasSubstr("it is larger than"), HasSubstr("Cannot write")));
}

TEST_F(FileUserDefaultsTest, ALinkStaysALink) {
    const auto target = folder_.path() / "elsewhere";
    std::ofstream(target) << "[Defaults]\na=1\n";
    std::filesystem::create_directories(path().parent_path());
    std::filesystem::create_symlink(target, path());
    open()->setNumber(2, "a");
    EXPECT_TRUE(std::filesystem::is_symlink(path()));
    EXPECT_EQ(content(), "[Defaults]\na=2\n");
}

class FileBackend {
public:
    [[nodiscard]] UserDefaults& defaults() const { return *defaults_; }
    void reopen() {
        defaults_.reset();
        defaults_ = std::make_unique<FileUserDefaults>(folder_.path() / "defaults", queue_, log_);
    }

private:
    TemporaryFolder folder_;
    Journal journal_;
    FakeMainQueue queue_{journal_};
    FakeLogSink log_{journal_};
    std::unique_ptr<FileUserDefaults> defaults_ =
        std::make_unique<FileUserDefaults>(folder_.path() / "defaults", queue_, log_);
};

INSTANTIATE_TYPED_TEST_SUITE_P(File, UserDefaultsContract, FileBackend);

TEST(DefaultsPathTest, FollowsTheConventions) {
    const posix::Variable home("HOME", "/home/someone");
    {
        const posix::Variable config("XDG_CONFIG_HOME", "/somewhere");
        EXPECT_EQ(linux::defaultsPath(), "/somewhere/pelistra/defaults");
    }
    for (const char* const useless : {"relative", static_cast<const char*>(nullptr)}) {
        const posix::Variable config("XDG_CONFIG_HOME", useless);
        EXPECT_EQ(linux::defaultsPath(), "/home/someone/.config/pelistra/defaults");
    }
}

TEST(DefaultsPathTest, WithoutHomeItAsksTheSystem) {
    const posix::Variable config("XDG_CONFIG_HOME", nullptr);
    const posix::Variable home("HOME", nullptr);
    EXPECT_TRUE(linux::defaultsPath().is_absolute());
}

} // namespace

} // namespace pelistra::testing
