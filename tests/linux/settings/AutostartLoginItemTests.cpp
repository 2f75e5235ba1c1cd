#include "platform/linux/settings/AutostartLoginItem.h"

#include "platform/linux/programs/DesktopEntry.h"
#include "platform/posix/Environment.h"
#include "tests/contract/LoginItemContract.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/TemporaryFolder.h"

#include <fstream>
#include <iterator>
#include <system_error>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pelistra::testing {

namespace {

using linux::AutostartLoginItem;
using linux::AutostartPlaces;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Optional;
namespace fs = std::filesystem;

void write(const fs::path& file, const std::string& text) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

class AutostartBackend {
public:
    AutostartBackend() {
        write(program_, "#!/bin/sh\n");
        fs::permissions(program_, fs::perms::owner_all);
    }

    [[nodiscard]] LoginItem& item() { return item_; }
    [[nodiscard]] LoginItem& another() { return another_; }
    // A file where the folder of the entries should be.
    void refuse() const { write(folder_.path() / "config", ""); }

private:
    TemporaryFolder folder_;
    fs::path program_ = folder_.path() / "bin/pelistra";
    AutostartPlaces places_{.userEntry = folder_.path() / "config/autostart/pelistra.desktop",
                            .systemEntries = {},
                            .unitMasks = {},
                            .desktops = {}};
    AutostartLoginItem item_{places_, program_};
    AutostartLoginItem another_{places_, program_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(Autostart, LoginItemContract, AutostartBackend);

class AutostartLoginItemTest : public ::testing::Test {
protected:
    AutostartLoginItemTest() {
        write(program_, "#!/bin/sh\n");
        fs::permissions(program_, fs::perms::owner_all);
    }

    [[nodiscard]] AutostartPlaces places() const {
        return {.userEntry = userEntry_,
                .systemEntries = {systemEntry_},
                .unitMasks = {mask_},
                .desktops = {"XFCE", "Other"}};
    }
    [[nodiscard]] AutostartLoginItem item() const { return {places(), program_}; }
    [[nodiscard]] LoginItemStatus status() const { return item().status(); }
    // An entry of ours with further lines.
    [[nodiscard]] std::string entry(const std::string& more = "") const {
        return "[Desktop Entry]\nType=Application\nName=Pelistra\nExec=" + program_.string() +
               "\n" + more;
    }

    TemporaryFolder folder_;
    fs::path userEntry_ = folder_.path() / "config/autostart/pelistra.desktop";
    fs::path systemEntry_ = folder_.path() / "xdg/autostart/pelistra.desktop";
    fs::path mask_ = folder_.path() / "config/systemd/user/app-pelistra@autostart.service";
    fs::path program_ = folder_.path() / "bin/pelistra";
};

TEST_F(AutostartLoginItemTest, IsNotRegisteredWithoutAnEntry) {
    EXPECT_EQ(status(), LoginItemStatus::NotRegistered);
}

TEST_F(AutostartLoginItemTest, RegisteringWritesAnEntryThatStartsTheProgramWithTheMenuBar) {
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(status(), LoginItemStatus::Enabled);
    const auto written = linux::parseDesktopEntry(contentOf(userEntry_));
    ASSERT_TRUE(written);
    EXPECT_EQ(written->name, "Pelistra");
    EXPECT_FALSE(written->terminal);
    EXPECT_THAT(linux::commandOf(*written), ElementsAre(program_.string(), "--start-menu-bar"));
    EXPECT_THAT(contentOf(userEntry_), HasSubstr("\nX-GNOME-Autostart-enabled=true\n"));
}

TEST_F(AutostartLoginItemTest, TheEntryIsPrivateAndNothingElseIsLeftBeside) {
    ASSERT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(fs::status(userEntry_).permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(std::distance(fs::directory_iterator(userEntry_.parent_path()), {}), 1);
}

TEST_F(AutostartLoginItemTest, UnregisteringRemovesTheEntry) {
    ASSERT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(item().unregisterItem(), std::nullopt);
    EXPECT_FALSE(fs::exists(userEntry_));
    EXPECT_EQ(status(), LoginItemStatus::NotRegistered);
    EXPECT_EQ(item().unregisterItem(), std::nullopt);
}

TEST_F(AutostartLoginItemTest, ProgramsInAwkwardFoldersAreQuoted) {
    for (const std::string name : {"with space", "dollar$and`tick", "quo\"te", "back\\slash"}) {
        program_ = folder_.path() / name / "pelistra";
        write(program_, "#!/bin/sh\n");
        fs::permissions(program_, fs::perms::owner_all);
        ASSERT_EQ(item().unregisterItem(), std::nullopt);
        EXPECT_EQ(item().registerItem(), std::nullopt) << name;
        const auto written = linux::parseDesktopEntry(contentOf(userEntry_));
        ASSERT_TRUE(written) << name;
        EXPECT_EQ(linux::commandOf(*written).front(), program_.string());
    }
}

TEST(QuotedForExec, EscapesWhatHasAMeaningInQuotes) {
    EXPECT_EQ(linux::quotedForExec("/usr/bin/pelistra"), R"("/usr/bin/pelistra")");
    EXPECT_EQ(linux::quotedForExec(R"(a"b$c`d\e%f)"), R"("a\"b\$c\`d\\e%%f")");
}

TEST_F(AutostartLoginItemTest, WhatOthersWroteCounts) {
    const std::vector<std::pair<std::string, LoginItemStatus>> cases{
        {entry(), LoginItemStatus::Enabled},
        {entry("Hidden=true\n"), LoginItemStatus::NotRegistered},
        {entry("Hidden=false\n"), LoginItemStatus::Enabled},
        {entry("X-GNOME-Autostart-enabled=false\n"), LoginItemStatus::RequiresApproval},
        {entry("X-MATE-Autostart-enabled=false\n"), LoginItemStatus::RequiresApproval},
        {entry("OnlyShowIn=GNOME;KDE;\n"), LoginItemStatus::RequiresApproval},
        {entry("OnlyShowIn=GNOME;XFCE\n"), LoginItemStatus::Enabled},
        {entry("NotShowIn=Other;\n"), LoginItemStatus::RequiresApproval},
        {entry("NotShowIn=GNOME;\n"), LoginItemStatus::Enabled},
        {entry("TryExec=/nowhere/pelistra\n"), LoginItemStatus::NotFound},
        {"[Desktop Entry]\nType=Application\nName=Pelistra\nExec=/nowhere/pelistra\n",
         LoginItemStatus::NotFound},
        {"[Desktop Entry]\nType=Application\nName=Pelistra\nExec=true\n",
         LoginItemStatus::NotRegistered},
        {"[Desktop Entry]\nType=Application\nName=Pelistra\nExec=sh -c \"sleep 2; pelistra\"\n",
         LoginItemStatus::Enabled},
        {"[Desktop Entry]\nType=Link\nName=Pelistra\n", LoginItemStatus::NotRegistered},
        {"", LoginItemStatus::NotRegistered},
        {"\x01\xff nonsense", LoginItemStatus::NotRegistered}};
    for (const auto& [text, expected] : cases) {
        write(userEntry_, text);
        EXPECT_EQ(status(), expected) << text;
    }
}

TEST_F(AutostartLoginItemTest, AHeldBackEntryIsSwitchedOnAgain) {
    for (const std::string more :
         {"X-GNOME-Autostart-enabled=false\n", "Hidden=true\n", "OnlyShowIn=KDE;\n"}) {
        write(userEntry_, entry(more));
        EXPECT_EQ(item().registerItem(), std::nullopt) << more;
        EXPECT_EQ(status(), LoginItemStatus::Enabled) << more;
    }
}

TEST_F(AutostartLoginItemTest, AnEnabledEntryIsLeftAsTheUserChangedIt) {
    const std::string changed = entry("X-GNOME-Autostart-Delay=5\n");
    write(userEntry_, changed);
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(contentOf(userEntry_), changed);
}

TEST_F(AutostartLoginItemTest, ALinkToNothingMasksAndIsReplaced) {
    fs::create_directories(userEntry_.parent_path());
    fs::create_symlink("/dev/null", userEntry_);
    EXPECT_EQ(status(), LoginItemStatus::NotRegistered);
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_FALSE(fs::is_symlink(userEntry_));
    EXPECT_EQ(status(), LoginItemStatus::Enabled);
}

TEST_F(AutostartLoginItemTest, ALinkToAFileIsWrittenThrough) {
    const fs::path elsewhere = folder_.path() / "dotfiles/pelistra.desktop";
    write(elsewhere, entry("Hidden=true\n"));
    fs::create_directories(userEntry_.parent_path());
    fs::create_symlink(elsewhere, userEntry_);
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_TRUE(fs::is_symlink(userEntry_));
    EXPECT_THAT(contentOf(elsewhere), HasSubstr("--start-menu-bar"));
}

TEST_F(AutostartLoginItemTest, AMaskedUnitIsSaidAndStaysOff) {
    fs::create_directories(mask_.parent_path());
    fs::create_symlink("/dev/null", mask_);
    EXPECT_THAT(item().registerItem(),
                Optional(std::make_error_code(std::errc::operation_not_permitted).message()));
    EXPECT_EQ(status(), LoginItemStatus::RequiresApproval);
}

TEST_F(AutostartLoginItemTest, TheSystemsEntryCountsUnlessTheUsersTakesItsPlace) {
    write(systemEntry_, entry());
    EXPECT_EQ(status(), LoginItemStatus::Enabled);
    EXPECT_EQ(item().unregisterItem(), std::nullopt);
    EXPECT_EQ(status(), LoginItemStatus::NotRegistered);
    EXPECT_TRUE(fs::exists(systemEntry_));
    EXPECT_EQ(item().registerItem(), std::nullopt);
    EXPECT_EQ(status(), LoginItemStatus::Enabled);
}

TEST_F(AutostartLoginItemTest, AFileInTheFoldersPlaceIsSaidInTheSystemsWords) {
    write(userEntry_.parent_path(), "a file");
    EXPECT_THAT(item().registerItem(),
                Optional(std::make_error_code(std::errc::not_a_directory).message()));
    EXPECT_EQ(status(), LoginItemStatus::NotRegistered);
}

TEST_F(AutostartLoginItemTest, AFolderInTheFilesPlaceIsSaidInTheSystemsWords) {
    fs::create_directories(userEntry_ / "inside");
    EXPECT_EQ(status(), LoginItemStatus::NotRegistered);
    const auto directory = std::make_error_code(std::errc::is_a_directory).message();
    EXPECT_THAT(item().registerItem(),
                Optional(AnyOf(directory, std::make_error_code(std::errc::file_exists).message())));
    EXPECT_THAT(item().unregisterItem(), Optional(directory));
}

// Also holds for the superuser, whom permissions do not stop.
TEST_F(AutostartLoginItemTest, AFullOrMissingDeviceIsSaidInTheSystemsWords) {
    userEntry_ = "/proc/autostart/pelistra.desktop";
    EXPECT_THAT(item().registerItem(),
                Optional(std::make_error_code(std::errc::no_such_file_or_directory).message()));
    EXPECT_EQ(status(), LoginItemStatus::NotRegistered);
}

// Permissions do not stop the superuser, so the test is somebody else for a while then.
class Unprivileged {
public:
    explicit Unprivileged(const fs::path& folder) {
        constexpr uid_t nobody = 65534;
        if (wasSuperuser_) {
            fs::permissions(folder, fs::perms::others_exec | fs::perms::others_read,
                            fs::perm_options::add);
            EXPECT_EQ(::seteuid(nobody), 0);
        }
    }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;
    ~Unprivileged() {
        if (wasSuperuser_) {
            EXPECT_EQ(::seteuid(0), 0);
        }
    }

private:
    bool wasSuperuser_ = ::geteuid() == 0;
};

TEST_F(AutostartLoginItemTest, AnUnwritableFolderIsSaidInTheSystemsWords) {
    fs::create_directories(userEntry_.parent_path());
    write(userEntry_, entry());
    fs::permissions(program_.parent_path().parent_path(), fs::perms(0755));
    fs::permissions(userEntry_.parent_path().parent_path(), fs::perms(0755));
    fs::permissions(userEntry_.parent_path(), fs::perms(0555));
    const auto denied = std::make_error_code(std::errc::permission_denied).message();
    {
        const Unprivileged somebody(folder_.path());
        EXPECT_THAT(item().unregisterItem(), Optional(denied));
    }
    EXPECT_TRUE(fs::exists(userEntry_));
    fs::permissions(userEntry_.parent_path(), fs::perms(0755));
    fs::remove(userEntry_);
    fs::permissions(userEntry_.parent_path(), fs::perms(0555));
    {
        const Unprivileged somebody(folder_.path());
        EXPECT_THAT(item().registerItem(), Optional(denied));
    }
    fs::permissions(userEntry_.parent_path(), fs::perms(0755));
    EXPECT_EQ(status(), LoginItemStatus::NotRegistered);
}

TEST(AutostartPlaces, FollowTheEnvironment) {
    const posix::Variable config("XDG_CONFIG_HOME", "/tmp/somewhere");
    const posix::Variable others("XDG_CONFIG_DIRS", "/etc/one:/etc/two");
    const posix::Variable desktop("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    const auto places = AutostartPlaces::ofEnvironment();
    EXPECT_EQ(places.userEntry, "/tmp/somewhere/autostart/pelistra.desktop");
    EXPECT_THAT(places.systemEntries, ElementsAre("/etc/one/autostart/pelistra.desktop",
                                                  "/etc/two/autostart/pelistra.desktop"));
    EXPECT_THAT(places.desktops, ElementsAre("ubuntu", "GNOME"));
}

} // namespace

} // namespace pelistra::testing
