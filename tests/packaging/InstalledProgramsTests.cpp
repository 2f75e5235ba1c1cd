#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/XClient.h"
#include "tests/packaging/PackageRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

// The programs out of the installed package, not out of the build's folder.
class InstalledProgramsTests : public ::testing::Test {
protected:
    InstalledProgramsTests() {
        const ToolRun run = root_.install(packageUnderTest());
        EXPECT_TRUE(run.succeeded()) << run.output;
    }

    [[nodiscard]] std::string program(const std::string& name) const {
        return (root_.path() / "usr/bin" / name).string();
    }

    PackageRoot root_;
};

TEST_F(InstalledProgramsTests, TheyTellTheirVersion) {
    for (const std::string name : {"pelistra", "pelistra-menubar"}) {
        const ToolRun run = runTool({program(name), "--version"});
        EXPECT_TRUE(run.succeeded());
        EXPECT_EQ(run.output, name + " " + PELISTRA_VERSION + "\n");
    }
}

TEST_F(InstalledProgramsTests, TheyExplainTheirSwitches) {
    for (const std::string name : {"pelistra", "pelistra-menubar"}) {
        const ToolRun run = runTool({program(name), "--help"});
        EXPECT_TRUE(run.succeeded());
        EXPECT_THAT(run.output, StartsWith("Usage: " + name + " [OPTION]...\n"));
        EXPECT_EQ(runTool({program(name), "-h"}).output, run.output);
    }
}

TEST_F(InstalledProgramsTests, TheyRefuseAWrongCommandLine) {
    for (const std::string name : {"pelistra", "pelistra-menubar"}) {
        // Standard output goes elsewhere: the complaint belongs to standard error.
        const ToolRun run =
            runTool({"sh", "-c", "exec '" + program(name) + "' --nonsense >/dev/null"});
        EXPECT_EQ(run.exit, (ExitStatus{.status = 2}));
        EXPECT_THAT(run.output, StartsWith(name + ": unknown option '--nonsense'\n"));
    }
}

TEST_F(InstalledProgramsTests, BarAndOrganiserRun) {
    PrivateDisplay display;
    OrganiserUnderTest::completeOnboarding(display);
    XClient client(display.name());
    const auto bar = display.start({program("pelistra-menubar")});
    ASSERT_TRUE(waitFor([&] { return client.barWindow() != XCB_WINDOW_NONE; })) << bar->output();
    const auto organiser = display.start({program("pelistra")});
    ASSERT_TRUE(waitFor([&] {
        return client.barItem(OrganiserUnderTest::controlName).has_value() &&
               client.barItem(OrganiserUnderTest::dividerName).has_value();
    })) << organiser->output();
    EXPECT_EQ(organiser->terminate(), (ExitStatus{.status = 0})) << organiser->output();
    EXPECT_EQ(bar->terminate(), (ExitStatus{.status = 0})) << bar->output();
}

TEST_F(InstalledProgramsTests, TheOrganiserStartsTheBarThatIsInstalledBesideIt) {
    PrivateDisplay display;
    OrganiserUnderTest::completeOnboarding(display);
    XClient client(display.name());
    const auto organiser = display.start({program("pelistra"), "--start-menu-bar"});
    EXPECT_TRUE(waitFor([&] {
        return client.barItem(OrganiserUnderTest::controlName).has_value();
    })) << organiser->output();
    EXPECT_THAT(organiser->output(), HasSubstr("started " + program("pelistra-menubar")));
}

} // namespace
} // namespace pelistra::testing
