#include "menubar/OrderFile.h"
#include "platform/posix/Environment.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/TemporaryFolder.h"

#include <fstream>

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::OrderFile;
using menubar::OrderMemory;
using ::testing::HasSubstr;

OrderMemory twoItems() {
    OrderMemory memory;
    memory.place({.instance = "a", .className = "A"}, {}, {});
    memory.place({.instance = "b", .className = "B"}, {}, {});
    return memory;
}

class OrderFileTests : public ::testing::Test {
protected:
    TemporaryFolder folder_;
    std::filesystem::path path_ = folder_.path() / "deep" / "er" / "menubar-order";
};

TEST_F(OrderFileTests, WhatIsWrittenIsReadAgain) {
    OrderFile(path_).write(twoItems());
    EXPECT_EQ(OrderFile(path_).read(), twoItems());
}

TEST_F(OrderFileTests, TheFileIsTheUsersOwn) {
    OrderFile(path_).write(twoItems());
    struct stat status{};
    ASSERT_EQ(::stat(path_.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(OrderFileTests, TheLongestOrderFits) {
    OrderMemory memory;
    std::string longest;
    for (std::size_t i = 0; i + 4 < menubar::identityCharacterLimit; ++i) {
        longest += "\U0001F600";
    }
    for (std::size_t i = 0; i < OrderMemory::capacity; ++i) {
        const std::string name = longest + std::to_string(i);
        memory.place({.instance = name, .className = name, .ordinal = 9'999}, {}, {});
    }
    ASSERT_EQ(memory.order().size(), OrderMemory::capacity);
    OrderFile(path_).write(memory);
    EXPECT_EQ(OrderFile(path_).read(), memory);
}

TEST_F(OrderFileTests, NoFileIsNoOrderAndNoComplaint) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(OrderFile(path_).read(), OrderMemory());
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(OrderFileTests, AnUnchangedOrderIsNotWrittenAgain) {
    OrderFile file(path_);
    file.write(twoItems());
    std::filesystem::remove(path_);
    file.write(twoItems());
    EXPECT_FALSE(std::filesystem::exists(path_));
}

TEST_F(OrderFileTests, ADamagedFileCostsOneLineAndIsReplaced) {
    std::filesystem::create_directories(path_.parent_path());
    std::ofstream(path_) << "a\tA\t0\n\x01rubbish\nmore rubbish\n";
    OrderFile file(path_);
    ::testing::internal::CaptureStderr();
    const OrderMemory memory = file.read();
    EXPECT_THAT(::testing::internal::GetCapturedStderr(),
                HasSubstr("is damaged: 2 lines make no sense"));
    EXPECT_EQ(memory.order().size(), 1U);
    file.write(memory);
    EXPECT_EQ(contentOf(path_), memory.text());
}

TEST_F(OrderFileTests, AFolderInItsPlaceIsReportedAndHarmsNothing) {
    std::filesystem::create_directories(path_);
    OrderFile file(path_);
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(file.read(), OrderMemory());
    EXPECT_THAT(::testing::internal::GetCapturedStderr(), HasSubstr("cannot read the order"));
    ::testing::internal::CaptureStderr();
    file.write(twoItems());
    file.write(twoItems());
    // Said once, however often it fails.
    const std::string said = ::testing::internal::GetCapturedStderr();
    EXPECT_THAT(said, HasSubstr("cannot keep the order"));
    EXPECT_EQ(std::ranges::count(said, '\n'), 1);
}

TEST_F(OrderFileTests, WithoutAHomeNothingIsKept) {
    ::testing::internal::CaptureStderr();
    OrderFile file{std::filesystem::path()};
    EXPECT_EQ(file.read(), OrderMemory());
    file.write(twoItems());
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST(OrderFilePathTests, FollowsTheStateFolder) {
    const posix::Variable home("HOME", "/home/someone");
    {
        const posix::Variable state("XDG_STATE_HOME", "/state");
        EXPECT_EQ(OrderFile::defaultPath(), "/state/pelistra/menubar-order");
    }
    for (const char* useless : {static_cast<const char*>(nullptr), "", "relative"}) {
        const posix::Variable state("XDG_STATE_HOME", useless);
        EXPECT_EQ(OrderFile::defaultPath(), "/home/someone/.local/state/pelistra/menubar-order");
    }
    const posix::Variable state("XDG_STATE_HOME", nullptr);
    const posix::Variable nowhere("HOME", nullptr);
    EXPECT_EQ(OrderFile::defaultPath(), "");
}

} // namespace
} // namespace pelistra::testing
