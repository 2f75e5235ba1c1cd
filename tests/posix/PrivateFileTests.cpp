#include "platform/posix/PrivateFile.h"

#include "platform/posix/StopSignals.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/TemporaryFolder.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pelistra::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

// What was asked of the system since the test began, and what is to fail.
struct Calls {
    std::vector<std::string> list;
    int fsyncError = 0;
    int renameError = 0;
    std::chrono::milliseconds fsyncTime{};
};

Calls& calls() {
    static Calls all;
    return all;
}

std::string pathOf(int descriptor) {
    std::error_code error;
    return fs::read_symlink("/proc/self/fd/" + std::to_string(descriptor), error).string();
}

mode_t modeOf(const fs::path& path) {
    struct stat status{};
    EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
    return status.st_mode & 07777U;
}

std::vector<std::string> namesIn(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

class PrivateFileTest : public ::testing::Test {
protected:
    PrivateFileTest() { calls() = {}; }
    PrivateFileTest(const PrivateFileTest&) = delete;
    PrivateFileTest& operator=(const PrivateFileTest&) = delete;
    ~PrivateFileTest() override { calls() = {}; }

    [[nodiscard]] std::string write(std::string_view content) const {
        return posix::writeFileAtomically(path_, content);
    }

    TemporaryFolder folder_;
    fs::path path_ = folder_.path() / "one" / "two" / "file";
};

TEST_F(PrivateFileTest, IsWrittenToItsEndWhenTheProgramMustEndMeanwhile) {
    calls().fsyncTime = posix::StopSignals::patience;
    EXPECT_EXIT(
        {
            posix::StopSignals signals;
            signals.begin();
            ::raise(SIGTERM);
            static_cast<void>(write("last words"));
            // The deadline was held off until now.
            ::_exit(1);
        },
        ::testing::ExitedWithCode(0), "");
    EXPECT_EQ(contentOf(path_), "last words");
    EXPECT_THAT(namesIn(path_.parent_path()), ElementsAre("file"));
}

// A umask that lets everybody in, or not even oneself.
class UmaskAs {
public:
    explicit UmaskAs(mode_t mask) : before_(::umask(mask)) {}
    UmaskAs(const UmaskAs&) = delete;
    UmaskAs& operator=(const UmaskAs&) = delete;
    ~UmaskAs() { ::umask(before_); }

private:
    mode_t before_;
};

TEST_F(PrivateFileTest, FilesAndFoldersAreTheUsersOwnWhateverTheUmaskAllows) {
    const UmaskAs everybody(0);
    ASSERT_EQ(write("secret"), "");
    EXPECT_EQ(modeOf(path_), 0600U);
    EXPECT_EQ(modeOf(path_.parent_path()), 0700U);
    EXPECT_EQ(modeOf(path_.parent_path().parent_path()), 0700U);
}

TEST_F(PrivateFileTest, AFileThatOthersCouldReadBecomesPrivate) {
    fs::create_directories(path_.parent_path());
    std::ofstream(path_) << "old";
    fs::permissions(path_, fs::perms::all);
    ASSERT_EQ(write("new"), "");
    EXPECT_EQ(modeOf(path_), 0600U);
    EXPECT_EQ(contentOf(path_), "new");
}

TEST_F(PrivateFileTest, AFolderThatIsThereKeepsItsRightsAndTheFileIsPrivateAllTheSame) {
    constexpr auto readableByAll = fs::perms::owner_all | fs::perms::group_read |
                                   fs::perms::group_exec | fs::perms::others_read |
                                   fs::perms::others_exec;
    fs::create_directories(path_.parent_path());
    fs::permissions(path_.parent_path(), readableByAll);
    ASSERT_EQ(write("content"), "");
    EXPECT_EQ(modeOf(path_.parent_path()), 0755U);
    EXPECT_EQ(modeOf(path_), 0600U);
}

TEST_F(PrivateFileTest, TheContentIsSyncedThenRenamedThenTheFolderIsSynced) {
    fs::create_directories(path_.parent_path());
    ASSERT_EQ(write("content"), "");
    const std::string folder = path_.parent_path().string();
    ASSERT_EQ(calls().list.size(), 3U);
    // The new file, beside the old one, under another name.
    EXPECT_THAT(calls().list[0], ::testing::MatchesRegex("fsync " + path_.string() + "\\..{6}"));
    EXPECT_EQ(calls().list[1], "rename" + calls().list[0].substr(std::string("fsync").size()) +
                                   " " + path_.string());
    EXPECT_EQ(calls().list[2], "fsync " + folder);
    EXPECT_THAT(namesIn(folder), ElementsAre("file"));
}

TEST_F(PrivateFileTest, ANewFolderIsSyncedIntoTheOneAboveIt) {
    ASSERT_EQ(write("content"), "");
    ASSERT_EQ(calls().list.size(), 5U);
    EXPECT_EQ(calls().list[0], "fsync " + folder_.path().string());
    EXPECT_EQ(calls().list[1], "fsync " + (folder_.path() / "one").string());
    EXPECT_EQ(calls().list[4], "fsync " + path_.parent_path().string());
}

TEST_F(PrivateFileTest, WhatCannotBeSyncedReplacesNothing) {
    ASSERT_EQ(write("old"), "");
    calls() = {.list = {}, .fsyncError = ENOSPC, .renameError = 0};
    EXPECT_THAT(write("new"), Not(IsEmpty()));
    EXPECT_EQ(contentOf(path_), "old");
    EXPECT_THAT(namesIn(path_.parent_path()), ElementsAre("file"));
    EXPECT_EQ(calls().list.size(), 1U) << "nothing is renamed after a failure";
}

TEST_F(PrivateFileTest, WhatCannotBeRenamedLeavesNothingBehind) {
    ASSERT_EQ(write("old"), "");
    calls() = {.list = {}, .fsyncError = 0, .renameError = EACCES};
    EXPECT_THAT(write("new"), Not(IsEmpty()));
    EXPECT_EQ(contentOf(path_), "old");
    EXPECT_THAT(namesIn(path_.parent_path()), ElementsAre("file"));
}

TEST_F(PrivateFileTest, ALinkWhereTheTemporaryFileComesIsNotFollowed) {
    // The name is drawn anew for every write and must not be there yet: what lies beside the file
    // under similar names stays as it is.
    ASSERT_EQ(write("old"), "");
    const fs::path other = folder_.path() / "other";
    std::ofstream(other) << "untouched";
    fs::create_symlink(other, path_.string() + ".XXXXXX");
    ASSERT_EQ(write("new"), "");
    EXPECT_EQ(contentOf(other), "untouched");
    EXPECT_EQ(contentOf(path_), "new");
}

TEST_F(PrivateFileTest, AReaderSeesTheWholeOldOrTheWholeNewContent) {
    const std::array contents{std::string(100'000, 'a'), std::string(50'000, 'b')};
    ASSERT_EQ(write(contents[0]), "");
    // A reader that has the old file open reads on in it.
    std::ifstream open(path_);
    ASSERT_EQ(open.get(), 'a');
    ASSERT_EQ(write(contents[1]), "");
    std::ostringstream rest;
    rest << open.rdbuf();
    EXPECT_EQ(rest.str(), contents[0].substr(1));
    EXPECT_EQ(contentOf(path_), contents[1]);
}

TEST_F(PrivateFileTest, ReadsNothingButFilesOfABoundedSize) {
    ASSERT_EQ(write("12345"), "");
    EXPECT_EQ(posix::readFile(path_, 5), "12345");
    EXPECT_EQ(posix::readFile(path_, 4), std::nullopt);
    EXPECT_EQ(posix::readFile(path_.parent_path(), 5), std::nullopt);
    EXPECT_EQ(posix::readFile("/dev/zero", 5), std::nullopt);
    const fs::path pipe = folder_.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(posix::readFile(pipe, 5), std::nullopt) << "a pipe nobody writes to must not block";
}

} // namespace
} // namespace pelistra::testing

// The names that the linker gives to the two ways.
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
int __real_fsync(int descriptor);
int __real_rename(const char* from, const char* to);

int __wrap_fsync(int descriptor) {
    auto& calls = pelistra::testing::calls();
    calls.list.push_back("fsync " + pelistra::testing::pathOf(descriptor));
    if (calls.fsyncError != 0) {
        errno = calls.fsyncError;
        return -1;
    }
    std::this_thread::sleep_for(calls.fsyncTime);
    return __real_fsync(descriptor);
}

int __wrap_rename(const char* from, const char* to) {
    auto& calls = pelistra::testing::calls();
    calls.list.push_back(std::string("rename ") + from + " " + to);
    if (calls.renameError != 0) {
        errno = calls.renameError;
        return -1;
    }
    return __real_rename(from, to);
}
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)
}
