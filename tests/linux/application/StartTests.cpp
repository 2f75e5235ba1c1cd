// How the program starts: options, displays, and the one organiser per display.

#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/XClient.h"

#include <csignal>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using ::testing::AnyOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Optional;

constexpr ExitStatus success{.status = 0};
constexpr ExitStatus failure{.status = 1};
constexpr ExitStatus wrongUse{.status = 2};

// Without any display.
class BareStartTest : public ::testing::Test {
protected:
    [[nodiscard]] std::unique_ptr<ChildProcess> start(const std::vector<std::string>& options,
                                                      const Environment& environment = {}) {
        std::vector<std::string> command{(builtPrograms() / "pelistra").string()};
        command.insert(command.end(), options.begin(), options.end());
        return std::make_unique<ChildProcess>(command, environment, folder_.path() / "output");
    }

    TemporaryFolder folder_;
};

TEST_F(BareStartTest, HelpAndVersionNeedNoDisplay) {
    const auto version = start({"--version"});
    EXPECT_THAT(version->waitForExit(), Optional(success));
    EXPECT_EQ(version->output(), "pelistra " PELISTRA_VERSION "\n");
    const auto help = start({"--help"});
    EXPECT_THAT(help->waitForExit(), Optional(success));
    EXPECT_THAT(help->output(), HasSubstr("Usage: pelistra"));
}

TEST_F(BareStartTest, AnUnknownOptionIsRefused) {
    const auto process = start({"--start-colapsed"});
    EXPECT_THAT(process->waitForExit(), Optional(wrongUse));
    EXPECT_EQ(process->output(), "pelistra: unknown option '--start-colapsed'\n"
                                 "Try 'pelistra --help'.\n");
}

TEST_F(BareStartTest, WithoutADisplayItSaysSo) {
    const auto process = start({});
    EXPECT_THAT(process->waitForExit(), Optional(failure));
    EXPECT_EQ(process->output(), "pelistra: no X display: DISPLAY is not set\n");
}

TEST_F(BareStartTest, ADisplayThatCannotBeReachedIsNamed) {
    const auto process = start({}, {{"DISPLAY", ":64999"}});
    EXPECT_THAT(process->waitForExit(), Optional(failure));
    EXPECT_EQ(process->output(), "pelistra: cannot connect to the X display ':64999'\n");
}

class StartTest : public ::testing::Test {
protected:
    StartTest() {
        std::filesystem::create_directories(display_.configFolder() / "pelistra");
        std::ofstream(display_.configFolder() / "pelistra" / "defaults")
            << "[Defaults]\nhasCompletedOnboarding." PELISTRA_VERSION "=true\n";
    }

    [[nodiscard]] std::unique_ptr<ChildProcess>
    start(const std::vector<std::string>& options = {}) {
        std::vector<std::string> command{(builtPrograms() / "pelistra").string()};
        command.insert(command.end(), options.begin(), options.end());
        return display_.start(command);
    }
    [[nodiscard]] std::unique_ptr<ChildProcess> startFirst() {
        auto process = start();
        EXPECT_TRUE(waitFor([this] {
            return client_.selectionOwner("_PELISTRA_ORGANISER_S0") != XCB_WINDOW_NONE;
        }));
        EXPECT_TRUE(process->waitForOutput("waiting for one"));
        return process;
    }
    [[nodiscard]] bool hasVisibleWindow(const std::string& title) {
        for (const xcb_window_t window : client_.children(client_.root())) {
            if (client_.isViewable(window) && client_.title(window) == title) {
                return true;
            }
        }
        return false;
    }

    PrivateDisplay display_;
    XClient client_{display_.name()};
};

TEST_F(StartTest, ASecondStartEndsAndSaysThatOneRuns) {
    const auto first = startFirst();
    const auto second = start({"--start-collapsed"});
    EXPECT_THAT(second->waitForExit(), Optional(success));
    EXPECT_EQ(second->output(), "pelistra: already running on this display\n");
    EXPECT_TRUE(first->isRunning());
}

TEST_F(StartTest, ASecondStartHandsItsWindowOver) {
    const auto first = startFirst();
    EXPECT_FALSE(hasVisibleWindow("Pelistra Settings"));
    const auto settings = start({"--show-settings"});
    EXPECT_THAT(settings->waitForExit(), Optional(success));
    EXPECT_THAT(settings->output(), IsEmpty());
    EXPECT_TRUE(waitFor([this] { return hasVisibleWindow("Pelistra Settings"); }));
    const auto onboarding = start({"--show-onboarding"});
    EXPECT_THAT(onboarding->waitForExit(), Optional(success));
    EXPECT_TRUE(waitFor([this] { return hasVisibleWindow("Welcome to Pelistra"); }));
    EXPECT_TRUE(first->isRunning());
}

TEST_F(StartTest, OfBothWindowsTheSettingsAreHandedOver) {
    const auto first = startFirst();
    const auto second = start({"--show-onboarding", "--show-settings"});
    EXPECT_THAT(second->waitForExit(), Optional(success));
    EXPECT_TRUE(waitFor([this] { return hasVisibleWindow("Pelistra Settings"); }));
    EXPECT_FALSE(hasVisibleWindow("Welcome to Pelistra"));
}

TEST_F(StartTest, ARunningOneThatDoesNotAnswerIsReportedInTime) {
    const auto first = startFirst();
    first->signal(SIGSTOP);
    const auto second = start({"--show-settings"});
    EXPECT_THAT(second->waitForExit(), Optional(failure));
    EXPECT_EQ(second->output(), "pelistra: already running, but it does not answer\n");
    first->signal(SIGCONT);
}

TEST_F(StartTest, TheNextStartAfterADeathTakesOver) {
    auto first = startFirst();
    first->kill();
    const auto second = startFirst();
    EXPECT_TRUE(second->isRunning());
}

TEST_F(StartTest, TheSelectionTellsItsTargetsAndRefusesOthers) {
    const auto first = startFirst();
    const xcb_window_t window = client_.connection().newId();
    xcb_create_window(client_.get(), 0, window, client_.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    const auto convert = [&](const std::string& target) {
        xcb_convert_selection(client_.get(), window, client_.atom("_PELISTRA_ORGANISER_S0"),
                              client_.atom(target), client_.atom("ANSWER"), XCB_CURRENT_TIME);
        client_.sync();
        const auto event = waitForValue([&] { return client_.connection().pollEvent(); });
        return x11::typeOf(*event) == XCB_SELECTION_NOTIFY
                   ? x11::eventAs<xcb_selection_notify_event_t>(*event).property
                   : xcb_atom_t{XCB_ATOM_NONE};
    };
    EXPECT_EQ(convert("TARGETS"), client_.atom("ANSWER"));
    EXPECT_THAT(client_.words(window, "ANSWER"),
                ::testing::ElementsAre(client_.atom("TARGETS"), client_.atom("TIMESTAMP"),
                                       client_.atom("_PELISTRA_SHOW_SETTINGS"),
                                       client_.atom("_PELISTRA_SHOW_ONBOARDING")));
    EXPECT_EQ(convert("TIMESTAMP"), client_.atom("ANSWER"));
    EXPECT_THAT(client_.words(window, "ANSWER"), ::testing::SizeIs(1));
    EXPECT_EQ(convert("STRING"), xcb_atom_t{XCB_ATOM_NONE});
}

TEST_F(StartTest, WhatOnlyItNeededIsGivenBack) {
    const auto process = startFirst();
    constexpr long someCode = 1024;
    EXPECT_TRUE(waitFor([&] { return memoryGivenBack(process->pid()) >= someCode; }));
}

TEST_F(StartTest, SignalsEndItInOrder) {
    for (const int number : {SIGTERM, SIGINT}) {
        const auto process = startFirst();
        process->signal(number);
        EXPECT_THAT(process->waitForExit(), Optional(success));
        EXPECT_TRUE(waitFor([this] {
            return client_.selectionOwner("_PELISTRA_ORGANISER_S0") == XCB_WINDOW_NONE;
        }));
    }
}

TEST_F(StartTest, ALostDisplayIsAMessageAndAStatus) {
    const auto process = startFirst();
    display_.killServer();
    EXPECT_THAT(process->waitForExit(), Optional(failure));
    // Qt watches a connection of its own and may be the first to notice, with its own words.
    EXPECT_THAT(process->output(),
                AnyOf(HasSubstr("display has gone"), HasSubstr("X11 connection broke")));
}

TEST_F(StartTest, WithoutATrayItWaitsAndSaysSoOnce) {
    const auto process = startFirst();
    EXPECT_THAT(process->output(),
                HasSubstr("pelistra: [menu-bar] There is no menu bar yet; waiting for one\n"));
    EXPECT_TRUE(staysTrue([&] { return process->occurrencesOf("waiting") == 1; },
                          std::chrono::milliseconds(500)));
}

// With a window manager, since it is the one who shows windows to taskbars.
TEST(Accessory, NothingIsManagedUntilAWindowIsAskedFor) {
    PrivateDisplay display({.windowManager = true});
    XClient client(display.name());
    std::filesystem::create_directories(display.configFolder() / "pelistra");
    std::ofstream(display.configFolder() / "pelistra" / "defaults")
        << "[Defaults]\nhasCompletedOnboarding." PELISTRA_VERSION "=true\n";
    const std::string program = (builtPrograms() / "pelistra").string();
    const auto process = display.start({program});
    ASSERT_TRUE(process->waitForOutput("waiting for one"));
    EXPECT_TRUE(
        staysTrue([&] { return client.managedWindows().empty(); }, std::chrono::milliseconds(500)));
    const auto second = display.start({program, "--show-settings"});
    ASSERT_THAT(second->waitForExit(), Optional(success));
    ASSERT_TRUE(waitFor([&] { return client.managedWindow("Pelistra Settings").has_value(); }));
    // And the window that was asked for is the active one.
    EXPECT_TRUE(waitFor([&] {
        const auto active = client.words(client.root(), "_NET_ACTIVE_WINDOW");
        return active.size() == 1 && client.title(active.front()) == "Pelistra Settings";
    }));
}

} // namespace

} // namespace pelistra::testing
