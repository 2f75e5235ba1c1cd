#include "tests/house/Sources.h"
#include "tests/packaging/PackageRoot.h"
#include "tests/packaging/UnpackedPackage.h"

#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::Contains;
using ::testing::ContainsRegex;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;
using ::testing::Values;

namespace fs = std::filesystem;

class InstalledFilesTests : public ::testing::Test {
protected:
    UnpackedPackage package_;
};

// Once for each program.
class ProgramFilesTests : public ::testing::TestWithParam<std::string> {
protected:
    UnpackedPackage package_;
};

INSTANTIATE_TEST_SUITE_P(Of, ProgramFilesTests, Values("pelistra", "pelistra-menubar"));

TEST_P(ProgramFilesTests, TheDesktopEntryIsValid) {
    const ToolRun run =
        runTool({"desktop-file-validate", package_.desktopEntry(GetParam()).string()});
    EXPECT_TRUE(run.succeeded());
    EXPECT_EQ(run.output, "");
}

TEST_F(InstalledFilesTests, AnInvalidDesktopEntryIsFound) {
    const fs::path entry = package_.path() / "bad.desktop";
    std::ofstream(entry) << "[Desktop Entry]\nType=Application\n";
    EXPECT_FALSE(runTool({"desktop-file-validate", entry.string()}).succeeded());
}

TEST_P(ProgramFilesTests, TheDesktopEntryStartsTheProgramAndSpeaksChinese) {
    const auto lines = linesOf(contentOf(package_.desktopEntry(GetParam())));
    EXPECT_THAT(lines, Contains("TryExec=" + GetParam()));
    EXPECT_THAT(lines, Contains(StartsWith("Exec=" + GetParam())));
    EXPECT_THAT(lines, Contains("Icon=pelistra"));
    EXPECT_THAT(lines, Contains(StartsWith("GenericName[zh_CN]=")));
    EXPECT_THAT(lines, Contains(StartsWith("Comment[zh_CN]=")));
    EXPECT_TRUE(fs::exists(package_.bin() / GetParam()));
}

// The unit as it is, but with a folder for the program, which systemd looks for.
std::string complaintsAbout(const fs::path& unit, const fs::path& programFolder,
                            const fs::path& workshop) {
    std::string text = contentOf(unit);
    const std::string start = "ExecStart=";
    const auto place = text.find(start);
    EXPECT_NE(place, std::string::npos) << unit;
    text.insert(place + start.size(), programFolder.string() + "/");
    const fs::path copy = workshop / unit.filename();
    std::ofstream(copy) << text;
    const ToolRun run = runTool({"systemd-analyze", "--user", "--man=no", "verify", copy.string()});
    return run.output + (run.succeeded() ? "" : "failed");
}

TEST_P(ProgramFilesTests, TheUserUnitIsUnderstood) {
    const fs::path unit = package_.userUnit(GetParam());
    EXPECT_EQ(complaintsAbout(unit, package_.bin(), package_.path()), "");
    EXPECT_THAT(complaintsAbout(unit, "/nowhere", package_.path()), HasSubstr("/nowhere"));
}

TEST_F(InstalledFilesTests, NothingStartsAtLoginByItself) {
    EXPECT_FALSE(fs::exists(package_.path() / "etc"));
    EXPECT_THAT(filesBelow(package_.path()), Each(Not(HasSubstr(".wants/"))));
}

TEST_F(InstalledFilesTests, SoftwareCentresUnderstandTheMetadata) {
    const fs::path file = package_.share() / "metainfo/com.pelistra.app.metainfo.xml";
    for (const auto& [command, subject] :
         {std::pair{"validate", file}, std::pair{"validate-tree", package_.path()}}) {
        const ToolRun run = runTool({"appstreamcli", command, "--no-net", subject.string()});
        EXPECT_THAT(run.output, HasSubstr("Validation ")) << command;
        // Newer versions miss a homepage, older ones do not know the element for the developer.
        EXPECT_THAT(run.linesWithout({"url-homepage-missing", "unknown-tag developer"}),
                    Each(Not(ContainsRegex("[EWI]: "))))
            << command;
    }
    EXPECT_THAT(contentOf(file), HasSubstr("<release version=\"" PELISTRA_VERSION "\""));
}

// "48x48", as the header of a PNG file says.
std::string sizeOfPicture(const fs::path& file) {
    const std::string png = contentOf(file);
    EXPECT_THAT(png, StartsWith("\x89PNG\r\n"));
    const auto numberAt = [&png](std::size_t offset) {
        return static_cast<unsigned char>(png.at(offset)) * 256 +
               static_cast<unsigned char>(png.at(offset + 1));
    };
    return std::to_string(numberAt(18)) + "x" + std::to_string(numberAt(22));
}

TEST_F(InstalledFilesTests, IconsHaveTheSizesOfTheirFolders) {
    std::vector<std::string> sizes;
    for (const auto& folder : fs::directory_iterator(package_.share() / "icons/hicolor")) {
        sizes.push_back(sizeOfPicture(folder.path() / "apps/pelistra.png"));
        EXPECT_EQ(folder.path().filename(), sizes.back());
    }
    EXPECT_THAT(sizes, UnorderedElementsAre("16x16", "22x22", "24x24", "32x32", "48x48", "64x64",
                                            "128x128", "256x256", "512x512"));
}

TEST_F(InstalledFilesTests, TheChangelogsNewestEntryIsThisVersion) {
    const fs::path folder = package_.share() / "doc/pelistra";
    EXPECT_THAT(uncompressed(folder / "changelog.Debian.gz"),
                StartsWith("pelistra (" PELISTRA_PACKAGE_VERSION ") "));
    EXPECT_THAT(uncompressed(folder / "changelog.gz"),
                StartsWith("# Changelog\n\n## " PELISTRA_VERSION "\n"));
}

} // namespace
} // namespace pelistra::testing
