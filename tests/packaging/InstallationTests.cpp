#include "tests/house/Sources.h"
#include "tests/packaging/PackageRoot.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;

namespace fs = std::filesystem;

constexpr auto installedNow = "installed " PELISTRA_PACKAGE_VERSION;
constexpr auto nextVersion = PELISTRA_PACKAGE_VERSION "+next";

// All that the package installs.
const std::vector<std::string>& packagedFiles() {
    static const std::vector<std::string> files{
        "usr/bin/pelistra",
        "usr/bin/pelistra-menubar",
        "usr/lib/systemd/user/pelistra-menubar.service",
        "usr/lib/systemd/user/pelistra.service",
        "usr/libexec/pelistra/pelistra-menubar-icons",
        "usr/libexec/pelistra/pelistra-menubar-menu",
        "usr/libexec/pelistra/pelistra-windows.so",
        "usr/share/applications/pelistra-menubar.desktop",
        "usr/share/applications/pelistra.desktop",
        "usr/share/bash-completion/completions/pelistra",
        "usr/share/bash-completion/completions/pelistra-menubar",
        "usr/share/doc/pelistra/changelog.Debian.gz",
        "usr/share/doc/pelistra/changelog.gz",
        "usr/share/doc/pelistra/copyright",
        "usr/share/icons/hicolor/128x128/apps/pelistra.png",
        "usr/share/icons/hicolor/16x16/apps/pelistra.png",
        "usr/share/icons/hicolor/22x22/apps/pelistra.png",
        "usr/share/icons/hicolor/24x24/apps/pelistra.png",
        "usr/share/icons/hicolor/256x256/apps/pelistra.png",
        "usr/share/icons/hicolor/32x32/apps/pelistra.png",
        "usr/share/icons/hicolor/48x48/apps/pelistra.png",
        "usr/share/icons/hicolor/512x512/apps/pelistra.png",
        "usr/share/icons/hicolor/64x64/apps/pelistra.png",
        "usr/share/lintian/overrides/pelistra",
        "usr/share/locale/zh/LC_MESSAGES/pelistra.mo",
        "usr/share/man/man1/pelistra-menubar.1.gz",
        "usr/share/man/man1/pelistra.1.gz",
        "usr/share/man/zh/man1/pelistra-menubar.1.gz",
        "usr/share/man/zh/man1/pelistra.1.gz",
        "usr/share/metainfo/com.pelistra.app.metainfo.xml",
        "usr/share/zsh/vendor-completions/_pelistra",
        "usr/share/zsh/vendor-completions/_pelistra-menubar",
    };
    return files;
}

// The package once more with a higher version: one file has gone, one has come, one has changed.
fs::path makeNextVersion(const fs::path& folder) {
    const fs::path tree = folder / "tree";
    const ToolRun unpacked =
        runTool({"dpkg-deb", "--raw-extract", packageUnderTest().string(), tree.string()});
    EXPECT_TRUE(unpacked.succeeded()) << unpacked.output;
    std::string control = contentOf(tree / "DEBIAN/control");
    const std::string version = "Version: " PELISTRA_PACKAGE_VERSION;
    const auto place = control.find(version);
    EXPECT_NE(place, std::string::npos);
    control.replace(place, version.size(), std::string("Version: ") + nextVersion);
    std::ofstream(tree / "DEBIAN/control") << control;
    fs::remove(tree / "usr/share/icons/hicolor/22x22/apps/pelistra.png");
    std::ofstream(tree / "usr/share/doc/pelistra/new") << "new\n";
    std::ofstream(tree / "usr/share/doc/pelistra/copyright") << "changed\n";
    fs::path package = folder / "next.deb";
    const ToolRun built = runTool({"dpkg-deb", "--root-owner-group", "-Zgzip", "-z1", "--build",
                                   tree.string(), package.string()});
    EXPECT_TRUE(built.succeeded()) << built.output;
    return package;
}

class InstallationTests : public ::testing::Test {
protected:
    // What a user of the system has written by using the programs.
    void makeUserFiles() {
        fs::create_directories(userFile_.parent_path());
        std::ofstream(userFile_) << "[Defaults]\nvalue=true\n";
    }

    // The root's files but the user's own.
    [[nodiscard]] std::vector<std::string> systemFiles() const {
        auto files = filesBelow(root_.path());
        std::erase_if(files, [](const std::string& file) { return file.starts_with("home/"); });
        return files;
    }

    PackageRoot root_;
    fs::path userFile_ = root_.path() / "home/user/.config/pelistra/defaults";
};

TEST_F(InstallationTests, ItInstallsItsFilesAndNoOther) {
    const ToolRun run = root_.install(packageUnderTest());
    ASSERT_TRUE(run.succeeded()) << run.output;
    EXPECT_EQ(root_.state(), installedNow);
    EXPECT_THAT(systemFiles(), ElementsAreArray(packagedFiles()));
}

TEST_F(InstallationTests, TheDatabaseFindsEveryFileAsItWasPacked) {
    ASSERT_TRUE(root_.install(packageUnderTest()).succeeded());
    const ToolRun intact = root_.dpkg({"--verify", "pelistra"});
    EXPECT_TRUE(intact.succeeded());
    EXPECT_EQ(intact.output, "");
    EXPECT_EQ(root_.dpkg({"--audit"}).output, "");
    std::ofstream(root_.path() / "usr/share/doc/pelistra/copyright") << "damaged\n";
    EXPECT_THAT(root_.dpkg({"--verify", "pelistra"}).output, Not(IsEmpty()));
}

TEST_F(InstallationTests, RemovingLeavesNothingBehindButTheUsersFiles) {
    makeUserFiles();
    const auto before = root_.content();
    ASSERT_TRUE(root_.install(packageUnderTest()).succeeded());
    const ToolRun run = root_.remove();
    ASSERT_TRUE(run.succeeded()) << run.output;
    EXPECT_EQ(root_.state(), "");
    EXPECT_THAT(root_.content(), ElementsAreArray(before));
    EXPECT_TRUE(fs::exists(userFile_));
    EXPECT_TRUE(root_.purge().succeeded());
    EXPECT_THAT(root_.content(), ElementsAreArray(before));
}

TEST_F(InstallationTests, PurgingLeavesNothingBehindButTheUsersFiles) {
    makeUserFiles();
    const auto before = root_.content();
    ASSERT_TRUE(root_.install(packageUnderTest()).succeeded());
    const ToolRun run = root_.purge();
    ASSERT_TRUE(run.succeeded()) << run.output;
    EXPECT_EQ(root_.state(), "");
    EXPECT_THAT(root_.content(), ElementsAreArray(before));
}

TEST_F(InstallationTests, AHigherVersionTakesTheOldOnesPlace) {
    const TemporaryFolder workshop;
    const fs::path next = makeNextVersion(workshop.path());
    makeUserFiles();
    const auto before = root_.content();
    ASSERT_TRUE(root_.install(packageUnderTest()).succeeded());
    const ToolRun run = root_.install(next);
    ASSERT_TRUE(run.succeeded()) << run.output;
    EXPECT_EQ(root_.state(), std::string("installed ") + nextVersion);
    auto expected = packagedFiles();
    std::erase(expected, "usr/share/icons/hicolor/22x22/apps/pelistra.png");
    expected.emplace_back("usr/share/doc/pelistra/new");
    EXPECT_THAT(systemFiles(), ::testing::UnorderedElementsAreArray(expected));
    EXPECT_EQ(contentOf(root_.path() / "usr/share/doc/pelistra/copyright"), "changed\n");
    EXPECT_TRUE(fs::exists(userFile_));
    ASSERT_TRUE(root_.purge().succeeded());
    EXPECT_THAT(root_.content(), ElementsAreArray(before));
}

TEST_F(InstallationTests, InstallingAgainRepairs) {
    ASSERT_TRUE(root_.install(packageUnderTest()).succeeded());
    fs::remove(root_.path() / "usr/bin/pelistra");
    ASSERT_THAT(systemFiles(), Not(Contains("usr/bin/pelistra")));
    ASSERT_TRUE(root_.install(packageUnderTest()).succeeded());
    EXPECT_THAT(systemFiles(), ElementsAreArray(packagedFiles()));
}

} // namespace
} // namespace pelistra::testing
