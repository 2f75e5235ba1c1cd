#include "tests/house/Sources.h"
#include "tests/packaging/Tools.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::AllOf;
using ::testing::ContainsRegex;
using ::testing::Each;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

std::string field(const std::string& name) {
    const ToolRun run = runTool({"dpkg-deb", "--field", packageUnderTest().string(), name});
    EXPECT_TRUE(run.succeeded()) << run.output;
    return run.output;
}

TEST(PackageTests, ItsFieldsSayWhatItIs) {
    EXPECT_EQ(field("Package"), "pelistra\n");
    EXPECT_EQ(field("Version"), std::string(PELISTRA_PACKAGE_VERSION) + "\n");
    EXPECT_THAT(field("Version"), StartsWith(PELISTRA_VERSION "-"));
    EXPECT_EQ(field("Section"), "x11\n");
    EXPECT_THAT(field("Description"), HasSubstr("pelistra-menubar"));
}

TEST(PackageTests, ItDependsOnTheLibrariesOfBothPrograms) {
    const std::string depends = field("Depends");
    for (const char* library :
         {"libc6 \\(>= ", "libqt6widgets6 \\(>= ", "libcairo2 \\(>= ", "libxcb1 \\(>= "}) {
        EXPECT_THAT(depends, ContainsRegex(library));
    }
}

TEST(PackageTests, ItRunsNothingWhenItIsInstalled) {
    const ToolRun run = runTool({"dpkg-deb", "--ctrl-tarfile", packageUnderTest().string()});
    ASSERT_TRUE(run.succeeded());
    for (const char* script : {"preinst", "postinst", "prerm", "postrm"}) {
        EXPECT_THAT(run.output, Not(HasSubstr(script)));
    }
}

TEST(PackageTests, EverythingBelongsToRootAndIsWritableByNobodyElse) {
    const ToolRun run = runTool({"dpkg-deb", "--contents", packageUnderTest().string()});
    ASSERT_TRUE(run.succeeded()) << run.output;
    const auto lines = linesOf(run.output);
    ASSERT_THAT(lines, Not(IsEmpty()));
    EXPECT_THAT(lines, Each(AllOf(ContainsRegex("^[-d]rw[-x]r-[-x]r-[-x] root/root "))));
    EXPECT_THAT(run.output,
                ContainsRegex("-rwxr-xr-x root/root +[0-9]+ [^\n]* ./usr/bin/pelistra\n"));
}

TEST(PackageTests, LintianHasNoComplaint) {
    const ToolRun run = runTool(
        {"lintian", "--allow-root", "--no-cfg", "--fail-on", "none", packageUnderTest().string()});
    EXPECT_TRUE(run.succeeded()) << run.output;
    // Newer versions have the metadata checked, too; another test does that better.
    EXPECT_THAT(run.linesWithout({"appstream-metadata-validation-failed"}),
                Each(Not(ContainsRegex("[EW]: pelistra"))));
}

} // namespace
} // namespace pelistra::testing
