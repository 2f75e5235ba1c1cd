#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/FileContent.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::HasSubstr;

constexpr auto noItems = OrganiserUnderTest::WaitForItems::No;

class OrganiserStartTests : public ::testing::Test {
protected:
    explicit OrganiserStartTests(const Desktop::Size& size = {}) : desktop_(size) {}

    [[nodiscard]] std::filesystem::path defaultsFile() {
        return desktop_.display().configFolder() / "pelistra" / "defaults";
    }

    [[nodiscard]] std::string defaults() { return contentOf(defaultsFile()); }

    Desktop desktop_;
};

using IdleTests = UnderCompositor<OrganiserStartTests>;
INSTANTIATE_TEST_SUITE_P(Under, IdleTests, ::testing::ValuesIn(everyCompositor),
                         compositorTestName);

TEST_P(IdleTests, BarAndOrganiserSleep) {
    const pid_t bar = desktop_.startBar().process().pid();
    const pid_t organiser = desktop_.startOrganiser().process().pid();
    desktop_.input().moveTo({.x = 400, .y = 400});
    const auto sleeps = [&](std::chrono::milliseconds time) {
        const auto before = std::pair(wakeUps(bar), wakeUps(organiser));
        return before.first && before.second &&
               staysTrue([&] { return std::pair(wakeUps(bar), wakeUps(organiser)) == before; },
                         time);
    };
    // Two seconds after its start the organiser gives back what that has needed, once.
    ASSERT_TRUE(waitFor([&] { return sleeps(std::chrono::milliseconds(2'500)); }));
    EXPECT_TRUE(sleeps(std::chrono::milliseconds(3'000)));
}

TEST_F(OrganiserStartTests, NoDisplayIsNamed) {
    const std::string program = (builtPrograms() / "pelistra").string();
    const auto unset = desktop_.display().start({program}, {{"DISPLAY", ""}});
    EXPECT_EQ(unset->waitForExit(), (ExitStatus{.status = 1}));
    EXPECT_THAT(unset->output(), HasSubstr("DISPLAY is not set"));
    const auto absent = desktop_.display().start({program}, {{"DISPLAY", ":987"}});
    EXPECT_EQ(absent->waitForExit(), (ExitStatus{.status = 1}));
    EXPECT_THAT(absent->output(), HasSubstr(":987"));
}

TEST_F(OrganiserStartTests, AnUnknownSwitchIsRefusedByName) {
    OrganiserUnderTest& organiser = desktop_.startOrganiser({"--show-setings"}, noItems);
    EXPECT_EQ(organiser.process().waitForExit(), (ExitStatus{.status = 2}));
    EXPECT_THAT(organiser.process().output(), HasSubstr("--show-setings"));
}

TEST_F(OrganiserStartTests, ItWaitsForATrayAndSaysSo) {
    OrganiserUnderTest& organiser = desktop_.startOrganiser({}, noItems);
    EXPECT_TRUE(organiser.process().waitForOutput("waiting for one"));
    EXPECT_TRUE(organiser.process().isRunning());
    desktop_.startBar();
    EXPECT_TRUE(waitFor([&] { return organiser.controlFrame() && organiser.dividerFrame(); }))
        << organiser.process().output();
}

TEST_F(OrganiserStartTests, TheFirstStartOfAVersionShowsOnboarding) {
    std::filesystem::remove(defaultsFile());
    desktop_.startBar();
    desktop_.startOrganiser();
    XClient& x = desktop_.x();
    ASSERT_TRUE(waitFor([&] { return x.managedWindow("Welcome to Pelistra").has_value(); }));
    const xcb_window_t window = *x.managedWindow("Welcome to Pelistra");
    EXPECT_TRUE(waitFor([&] {
        const auto frame = x.frame(window);
        return frame && frame->width == 760 && frame->height == 560;
    }));
}

TEST_F(OrganiserStartTests, AFirstStartWritesTheItemsPlaces) {
    std::filesystem::remove(defaultsFile());
    desktop_.startBar();
    desktop_.startOrganiser();
    EXPECT_TRUE(waitFor([this] {
        const std::string text = defaults();
        return text.find("NSStatusItem Preferred Position PelistraV3.Control=0") !=
                   std::string::npos &&
               text.find("NSStatusItem Preferred Position PelistraV3.Divider=1") !=
                   std::string::npos &&
               text.find("NSStatusItem Visible PelistraV3.Divider=true") != std::string::npos;
    })) << defaults();
}

TEST_F(OrganiserStartTests, ADragOfItsItemsIsKeptInTheDefaults) {
    desktop_.startBar();
    desktop_.startProgram("nabi");
    desktop_.startOrganiser();
    ASSERT_TRUE(
        desktop_.dragItem(OrganiserUnderTest::dividerName, desktop_.item("Nabi")->frame.x + 1));
    EXPECT_TRUE(waitFor([this] {
        return defaults().find("NSStatusItem Preferred Position PelistraV3.Divider=2") !=
               std::string::npos;
    })) << defaults();
}

TEST_F(OrganiserStartTests, DamagedDefaultsCostOneLineAndAreKept) {
    std::ofstream(defaultsFile()) << "[Defaults]\nhasCompletedOnboarding.0.1.0=true\n"
                                  << "this is damaged \x01\xff\n";
    desktop_.startBar();
    OrganiserUnderTest& organiser = desktop_.startOrganiser();
    EXPECT_TRUE(organiser.process().waitForOutput("defaults"));
    EXPECT_TRUE(organiser.process().isRunning());
    EXPECT_THAT(contentOf(defaultsFile().string() + ".damaged"), HasSubstr("this is damaged"));
}

TEST_F(OrganiserStartTests, UnwritableDefaultsCostALineAndNothingElse) {
    // A file where the folder should be: not even root can write below it.
    std::filesystem::remove_all(defaultsFile().parent_path());
    std::ofstream(defaultsFile().parent_path()) << "in the way\n";
    desktop_.startBar();
    desktop_.startProgram("nabi");
    OrganiserUnderTest& organiser = desktop_.startOrganiser();
    EXPECT_TRUE(organiser.process().waitForOutput("defaults"));
    ASSERT_TRUE(desktop_.clickControl());
    EXPECT_TRUE(desktop_.waitUntilCollapsed()) << organiser.process().output();
}

TEST_F(OrganiserStartTests, UnderAForeignTrayItDocksAndLivesOn) {
    const auto trayer = desktop_.display().start({"trayer"});
    XClient& x = desktop_.x();
    ASSERT_TRUE(waitFor([&] { return x.trayOwner() != XCB_WINDOW_NONE; }));
    OrganiserUnderTest& organiser = desktop_.startOrganiser({}, noItems);
    EXPECT_TRUE(organiser.process().waitForOutput("Expanded hidden section"));
    EXPECT_TRUE(
        staysTrue([&] { return organiser.process().isRunning(); }, std::chrono::milliseconds(500)))
        << organiser.process().output();
}

TEST_F(OrganiserStartTests, ItEndsWithItsXServer) {
    desktop_.startBar();
    OrganiserUnderTest& organiser = desktop_.startOrganiser();
    desktop_.display().killServer();
    EXPECT_TRUE(organiser.process().waitForExit());
    EXPECT_TRUE(desktop_.bar().process().waitForExit());
}

} // namespace
} // namespace pelistra::testing
