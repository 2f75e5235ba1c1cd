#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/TrayClient.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;

// What the bar says when it cannot start: a message that names the reason, and a status.
class BadBarStartTests : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<ChildProcess> start(const std::vector<std::string>& options,
                                                      const Environment& additional = {}) {
        std::vector<std::string> command{(builtPrograms() / "pelistra-menubar").string()};
        command.insert(command.end(), options.begin(), options.end());
        return display_.start(command, additional);
    }

    PrivateDisplay display_;
    XClient client_{display_.name()};
};

TEST_F(BadBarStartTests, NoDisplayIsNamed) {
    const auto unset = start({}, {{"DISPLAY", ""}});
    EXPECT_EQ(unset->waitForExit(), (ExitStatus{.status = 1}));
    EXPECT_THAT(unset->output(), HasSubstr("no X display: DISPLAY is not set"));

    const auto absent = start({"--display", ":987"});
    EXPECT_EQ(absent->waitForExit(), (ExitStatus{.status = 1}));
    EXPECT_THAT(absent->output(), HasSubstr(":987"));

    const auto nonsense = start({}, {{"DISPLAY", "nonsense"}});
    EXPECT_EQ(nonsense->waitForExit(), (ExitStatus{.status = 1}));
    EXPECT_THAT(nonsense->output(), HasSubstr("nonsense"));
}

TEST_F(BadBarStartTests, AnotherTrayIsNamedAndLeftAlone) {
    const auto trayer = display_.start({"trayer"});
    ASSERT_TRUE(waitFor([&] { return client_.trayOwner() != XCB_WINDOW_NONE; }));
    const xcb_window_t owner = client_.trayOwner();
    const auto bar = start({});
    EXPECT_EQ(bar->waitForExit(), (ExitStatus{.status = 1}));
    EXPECT_THAT(bar->output(), HasSubstr("trayer"));
    EXPECT_THAT(bar->output(), HasSubstr(std::to_string(trayer->pid())));
    EXPECT_EQ(client_.trayOwner(), owner);
    EXPECT_TRUE(trayer->isRunning());
}

TEST_F(BadBarStartTests, ReplaceTakesTheTrayOver) {
    const auto trayer = display_.start({"trayer"});
    ASSERT_TRUE(waitFor([&] { return client_.trayOwner() != XCB_WINDOW_NONE; }));
    const BarUnderTest bar(display_, client_, {"--replace"});
    EXPECT_NE(client_.barWindow(), XCB_WINDOW_NONE);
}

TEST_F(BadBarStartTests, ASecondBarNamesTheFirst) {
    BarUnderTest first(display_, client_);
    const auto second = start({});
    EXPECT_EQ(second->waitForExit(), (ExitStatus{.status = 1}));
    EXPECT_THAT(second->output(), HasSubstr("belongs to 'pelistra-menubar'"));
    EXPECT_TRUE(first.process().isRunning());
}

TEST_F(BadBarStartTests, WrongOptionsAreRefusedByName) {
    const std::vector<std::vector<std::string>> wrong{{"--bogus"},
                                                      {"--scale"},
                                                      {"--scale", "0"},
                                                      {"--scale=nan"},
                                                      {"--scale", "2x"},
                                                      {"--theme", "pink"},
                                                      {"--camera-housing"},
                                                      {"--camera-housing", "10"},
                                                      {"--camera-housing=a,b"},
                                                      {"--camera-housing", "10,-5"},
                                                      {"stray"}};
    for (const std::vector<std::string>& options : wrong) {
        const auto bar = start(options);
        EXPECT_EQ(bar->waitForExit(), (ExitStatus{.status = 2})) << options.front();
        EXPECT_THAT(bar->output(), HasSubstr(options.back().substr(options.back().find('=') + 1)));
        EXPECT_THAT(bar->output(), HasSubstr("--help"));
    }
    EXPECT_EQ(client_.trayOwner(), static_cast<xcb_window_t>(XCB_WINDOW_NONE));
}

TEST_F(BadBarStartTests, HelpAndVersionNeedNoDisplay) {
    const auto help = start({"--help"}, {{"DISPLAY", ""}});
    EXPECT_EQ(help->waitForExit(), (ExitStatus{.status = 0}));
    EXPECT_THAT(help->output(), HasSubstr("--camera-housing"));
    const auto version = start({"--version"}, {{"DISPLAY", ""}});
    EXPECT_EQ(version->waitForExit(), (ExitStatus{.status = 0}));
    EXPECT_THAT(version->output(), HasSubstr("pelistra-menubar"));
}

TEST_F(BadBarStartTests, ADamagedOrUnwritableOrderFileCostsOneLine) {
    const std::filesystem::path folder = display_.stateFolder() / "pelistra";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "menubar-order") << "\x01\x02 garbage\nmore \xff garbage\n";
    BarUnderTest bar(display_, client_);
    EXPECT_TRUE(bar.process().waitForOutput("menubar-order"));
    EXPECT_EQ(std::ranges::count(bar.process().output(), '\n'), 1);
}

TEST_F(BadBarStartTests, TheBarEndsWithItsXServer) {
    BarUnderTest bar(display_, client_);
    TrayClient icon(display_.name(), {.name = "Icon"});
    ASSERT_TRUE(icon.requestDock());
    ASSERT_TRUE(icon.waitUntilDocked());
    display_.killServer();
    EXPECT_EQ(bar.process().waitForExit(), (ExitStatus{.status = 1}));
    // One line, and no sanitizer's report after it.
    EXPECT_EQ(bar.process().output(), "pelistra-menubar: the X server went away\n");
}

TEST_F(BadBarStartTests, AnXServerThatDiesWhileTheBarStartsIsNamed) {
    // At moments spread over the whole start.
    for (const int delay : {0, 20, 40, 60, 80, 100, 130, 160}) {
        // The bar may ask for the dead server, and must not find that of a test beside this one.
        PrivateDisplay display({.ownNumber = true});
        const auto bar = display.start({(builtPrograms() / "pelistra-menubar").string()});
        std::this_thread::sleep_for(std::chrono::milliseconds(delay));
        display.killServer();
        EXPECT_EQ(bar->waitForExit(), (ExitStatus{.status = 1}));
        EXPECT_THAT(bar->output(), AnyOf("pelistra-menubar: the X server went away\n",
                                         HasSubstr("cannot connect to the X display")));
        EXPECT_EQ(std::ranges::count(bar->output(), '\n'), 1) << bar->output();
    }
}

} // namespace
} // namespace pelistra::testing
