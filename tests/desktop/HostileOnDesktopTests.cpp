// Tray programs that want more from the organiser than a place in its row.

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/SecondRowUnderTest.h"
#include "tests/desktop/harness/TrayClient.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pelistra::testing {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;

using Button = UserInput::Button;

constexpr RootPoint elsewhere{.x = 300, .y = 600};

// An icon of a process of its own: the organiser knows its owner by that.
class IconProcess {
public:
    IconProcess(const std::string& display, const TrayClient::Options& options) : pid_(::fork()) {
        if (pid_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            serve(display, options);
        }
    }
    IconProcess(const IconProcess&) = delete;
    IconProcess& operator=(const IconProcess&) = delete;
    ~IconProcess() {
        ::kill(pid_, SIGKILL);
        ::waitpid(pid_, nullptr, 0);
    }

private:
    [[noreturn]] static void serve(const std::string& display, const TrayClient::Options& options) {
        try {
            TrayClient icon(display, options);
            icon.requestDock();
            while (icon.x().connection().isAlive()) {
                icon.handleEvents();
                ::usleep(std::chrono::microseconds(lookInterval).count());
            }
        } catch (const std::exception&) {
            ::_exit(EXIT_FAILURE);
        }
        ::_exit(EXIT_SUCCESS);
    }

    pid_t pid_;
};

class HostileOnDesktopTests : public ::testing::Test {
protected:
    void SetUp() override {
        desktop_.startBar();
        AccessibleTree::letProgramsSpeak(desktop_.display());
    }

    // An application that notes how it was started.
    void install(const std::string& id, const fs::path& folder) {
        fs::create_directories(folder);
        const fs::path program = folder / (id + "-program");
        std::ofstream(program) << "#!/bin/sh\nprintf '%s|' \"$@\" > '" << started(id).string()
                               << ".part'\nmv '" << started(id).string() << ".part' '"
                               << started(id).string() << "'\n";
        fs::permissions(program, fs::perms::owner_all);
        std::ofstream(folder / (id + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=" << id << "\nExec=" << program.string()
            << " --own %U\n";
    }
    [[nodiscard]] fs::path started(const std::string& id) {
        return desktop_.display().folder() / "tmp" / (id + "-started");
    }
    [[nodiscard]] fs::path data() { return desktop_.display().folder() / "data"; }

    void dock(const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            icons_.push_back(std::make_unique<IconProcess>(desktop_.display().name(),
                                                           TrayClient::Options{.name = name}));
        }
        ASSERT_TRUE(waitFor([&] { return desktop_.items().size() == names.size(); }));
    }
    void openRow() {
        desktop_.startOrganiser({"--start-collapsed"});
        ASSERT_TRUE(desktop_.waitUntilCollapsed()) << log();
        ASSERT_TRUE(row_.open()) << log();
    }
    [[nodiscard]] std::string log() { return desktop_.organiser().process().output(); }
    [[nodiscard]] std::string listed(const std::vector<std::string>& options) {
        std::vector<std::string> command{(builtPrograms() / "pelistra").string()};
        command.insert(command.end(), options.begin(), options.end());
        const auto process = desktop_.display().start(command);
        EXPECT_EQ(process->waitForExit(), ExitStatus{.status = 0});
        return process->output();
    }
    // Every file that there is, but logs of programs and what lives as long as the X server.
    [[nodiscard]] std::set<std::string> files() {
        std::set<std::string> found;
        const fs::path folder = desktop_.display().folder();
        for (const char* part : {"home", "config", "state", "data", "tmp"}) {
            for (const auto& entry : fs::recursive_directory_iterator(folder / part)) {
                if (entry.is_regular_file()) {
                    found.insert(entry.path().lexically_relative(folder).string());
                }
            }
        }
        return found;
    }

    Desktop desktop_;
    AccessibleTree tree_{desktop_.display()};
    SecondRowUnderTest row_{desktop_, tree_};
    std::vector<std::unique_ptr<IconProcess>> icons_;
};

TEST_F(HostileOnDesktopTests, WhatAWindowCallsItselfRunsAndWritesNothing) {
    const fs::path trap = desktop_.display().folder() / "tmp" / "trap";
    install("outside", data() / "elsewhere");
    install("inside", data() / "applications");
    const std::vector<std::string> names{
        "../elsewhere/outside",
        (data() / "elsewhere" / "outside.desktop").string(),
        "$(touch " + trap.string() + ")",
        "inside; touch " + trap.string(),
        "x\nExec=/bin/touch " + trap.string() + "\npelistra: [status-bar] forged",
        "\x1b]0;forged\x07\x1b[2J\u202eforged\u2028pelistra: forged",
    };
    dock(names);
    openRow();
    const auto before = files();
    ASSERT_THAT(row_.icons(), SizeIs(names.size()));

    const auto isRevealed = [this] { return !desktop_.hiddenSectionIsOffScreen(); };
    int reveals = 0;
    for (std::size_t place = 0; place < names.size(); ++place) {
        for (const Button button : {Button::Left, Button::Right}) {
            if (!row_.isOpen()) {
                ASSERT_TRUE(row_.open()) << log();
            }
            desktop_.input().click(centre(row_.icons().at(place).frame), button);
            // A left click finds no application. A right one reveals the icon and clicks it; where
            // the bar is too slow for that, the row comes back.
            if (button == Button::Right) {
                ASSERT_TRUE(waitFor([&] { return !row_.isOpen(); }));
                ASSERT_TRUE(waitFor([&] { return isRevealed() || row_.isOpen(); })) << log();
                reveals += isRevealed() ? 1 : 0;
                ASSERT_TRUE(row_.endAnyReveal(elsewhere)) << log();
            }
        }
    }
    EXPECT_GT(reveals, 0);
    EXPECT_FALSE(fs::exists(trap));
    EXPECT_FALSE(fs::exists(started("outside")));
    EXPECT_FALSE(fs::exists(started("inside")));
    // The bar keeps the order, the organiser its own values.
    for (const std::string& file : files()) {
        EXPECT_TRUE(before.contains(file) || file.starts_with("config/pelistra/") ||
                    file.starts_with("state/pelistra/"))
            << file;
    }

    for (const std::string& text : {log(), desktop_.bar().process().output(),
                                    listed({"--list-items"}), listed({"--list-items", "--json"})}) {
        EXPECT_THAT(text, Not(HasSubstr("\npelistra: [status-bar] forged")));
        EXPECT_THAT(text, Not(HasSubstr("\nExec=")));
        for (const char* steering : {"\x1b", "\x07", "\u202e", "\u2028"}) {
            EXPECT_THAT(text, Not(HasSubstr(steering)));
        }
    }
    const std::string table = listed({"--list-items"});
    EXPECT_EQ(std::ranges::count(table, '\n'), static_cast<std::ptrdiff_t>(names.size() + 3))
        << table;
}

TEST_F(HostileOnDesktopTests, AnInstalledNameOpensThatAloneAndOnAClickOnly) {
    install("inside", data() / "applications");
    install("other", data() / "applications");
    dock({"inside"});
    openRow();
    ASSERT_THAT(row_.icons(), SizeIs(1));
    // Looked at, listed, named, but not started.
    EXPECT_THAT(listed({"--list-items"}), HasSubstr("inside"));
    EXPECT_FALSE(fs::exists(started("inside")));

    desktop_.input().click(centre(row_.icons().front().frame));
    ASSERT_TRUE(waitFor([&] { return fs::exists(started("inside")); })) << log();
    EXPECT_EQ(contentOf(started("inside")), "--own|");
    EXPECT_FALSE(fs::exists(started("other")));
}

TEST_F(HostileOnDesktopTests, AnEnormousIconHasThePlaceOfAnyOther) {
    dock({"Small"});
    icons_.push_back(std::make_unique<IconProcess>(
        desktop_.display().name(),
        TrayClient::Options{.name = "Enormous", .width = 9000, .height = 9000}));
    ASSERT_TRUE(waitFor([&] { return desktop_.items().size() == 2; }));
    openRow();
    const auto icons = row_.icons();
    ASSERT_THAT(icons, SizeIs(2));
    EXPECT_EQ(icons[0].frame.width, icons[1].frame.width);
    EXPECT_EQ(icons[0].frame.height, icons[1].frame.height);
    EXPECT_LE(icons[0].frame.right(), icons[1].frame.x);
    const auto frame = row_.frame();
    ASSERT_TRUE(frame);
    EXPECT_GE(frame->x, 0);
    EXPECT_LE(frame->right(), desktop_.x().rootFrame().width);
    desktop_.input().click(elsewhere);
    EXPECT_TRUE(waitFor([&] { return !row_.isOpen(); }));
}

} // namespace
} // namespace pelistra::testing
