#include "platform/linux/programs/X11RunningApplications.h"

#include "platform/linux/programs/Launcher.h"
#include "platform/linux/programs/ProcessFacts.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/linux/icons/TestTray.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pelistra::testing {
namespace {

using linux::TrayIcon;
using linux::X11RunningApplications;
using ::testing::Contains;
using ::testing::Not;

class RunningApplicationsTest : public ::testing::Test {
protected:
    void writeEntry(const std::string& id, const std::string& more) {
        std::filesystem::create_directories(folder.path() / "applications");
        std::ofstream(folder.path() / "applications" / (id + ".desktop"))
            << "[Desktop Entry]\nType=Application\nName=" << id << " in words\n"
            << more;
    }
    X11RunningApplications applications(const std::string& display = {}) {
        return X11RunningApplications(display, {.folders = {folder.path() / "applications"}});
    }

    TemporaryFolder folder;
};

TEST_F(RunningApplicationsTest, KnowsWhichProcessesRun) {
    auto all = applications();
    EXPECT_NE(all.runningApplication(::getpid()), nullptr);
    EXPECT_EQ(all.runningApplication(0), nullptr);
    EXPECT_EQ(all.runningApplication(-1), nullptr);
    EXPECT_EQ(all.runningApplication(0x7ffffff0), nullptr);
    EXPECT_THAT(all.processIdentifiers(), Contains(::getpid()));

    const pid_t ended = ::fork();
    if (ended == 0) {
        ::_exit(0);
    }
    siginfo_t info{};
    ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(ended), &info, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(linux::startTimeOf(ended), std::nullopt)
        << "a process that has ended and was not reaped";
    EXPECT_EQ(all.runningApplication(ended), nullptr);
    ASSERT_EQ(::waitpid(ended, nullptr, 0), ended);
    EXPECT_EQ(all.runningApplication(ended), nullptr);
    EXPECT_THAT(all.processIdentifiers(), Not(Contains(ended)));
}

// Processes that wait until they are told to end.
class WaitingProcesses {
public:
    explicit WaitingProcesses(int count) {
        for (int i = 0; i < count; ++i) {
            const pid_t process = ::fork();
            if (process == 0) {
                ::pause();
                ::_exit(0);
            }
            all_.push_back(process);
        }
    }
    WaitingProcesses(const WaitingProcesses&) = delete;
    WaitingProcesses& operator=(const WaitingProcesses&) = delete;
    ~WaitingProcesses() {
        end();
        for (const pid_t process : all_) {
            ::waitpid(process, nullptr, 0);
        }
    }

    [[nodiscard]] const std::vector<pid_t>& all() const { return all_; }
    // They stay behind as processes that nobody has asked how they ended.
    void end() const {
        for (const pid_t process : all_) {
            ::kill(process, SIGKILL);
            siginfo_t info{};
            ::waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT);
        }
    }

private:
    std::vector<pid_t> all_;
};

std::ptrdiff_t heldProcesses() {
    return std::ranges::count_if(
        std::filesystem::directory_iterator("/proc/self/fd"), [](const auto& file) {
            std::error_code error;
            return std::filesystem::read_symlink(file.path(), error) == "anon_inode:[pidfd]";
        });
}

TEST_F(RunningApplicationsTest, SeesManyProcessesEndAndHoldsOnToSomeOfThem) {
    constexpr int many = 100;
    constexpr std::ptrdiff_t mostHeld = 64;
    // Longer than an answer about a process is good for.
    constexpr std::chrono::milliseconds moment{25};
    auto all = applications();
    ASSERT_EQ(heldProcesses(), 0);
    for (int round = 0; round < 2; ++round) {
        const WaitingProcesses processes(many);
        for (const pid_t process : processes.all()) {
            EXPECT_NE(all.runningApplication(process), nullptr);
        }
        EXPECT_EQ(heldProcesses(), mostHeld);
        EXPECT_THAT(all.processIdentifiers(), ::testing::IsSupersetOf(processes.all()));
        processes.end();
        std::this_thread::sleep_for(moment);
        const auto left = all.processIdentifiers();
        for (const pid_t process : processes.all()) {
            EXPECT_THAT(left, Not(Contains(process)));
            EXPECT_EQ(all.runningApplication(process), nullptr);
        }
        EXPECT_EQ(heldProcesses(), 0);
    }
}

TEST_F(RunningApplicationsTest, AProcessWithoutAnEntryIsCalledByItsProgram) {
    auto all = applications();
    const auto application = all.runningApplication(::getpid());
    EXPECT_EQ(application->localizedName(), "linux_tests");
    EXPECT_EQ(application->bundleIdentifier(), std::nullopt);
    EXPECT_EQ(application->bundleUrl(), std::nullopt);
    EXPECT_EQ(application->icon(), nullptr);
}

TEST_F(RunningApplicationsTest, FindsTheEntryByTheProgram) {
    writeEntry("org.example.Tests", "Exec=/somewhere/linux_tests --x\n");
    auto all = applications();
    const auto application = all.runningApplication(::getpid());
    EXPECT_EQ(application->localizedName(), "org.example.Tests in words");
    EXPECT_EQ(application->bundleIdentifier(), "org.example.Tests");
    EXPECT_EQ(application->bundleUrl()->path,
              (folder.path() / "applications/org.example.Tests.desktop").string());
}

TEST_F(RunningApplicationsTest, AScriptIsNotItsInterpreter) {
    writeEntry("bash", "Exec=/bin/bash\n");
    const auto script = folder.path() / "tray-script";
    std::ofstream(script) << "while sleep 9; do :; done\n";
    const ChildProcess running({"/bin/bash", script.string()}, {{"PATH", "/usr/bin:/bin"}},
                               folder.path() / "output");
    EXPECT_TRUE(
        waitFor([&] { return linux::factsOf(running.pid()).displayName() == "tray-script"; }));
    auto all = applications();
    const auto application = all.runningApplication(running.pid());
    ASSERT_NE(application, nullptr);
    EXPECT_EQ(application->localizedName(), "tray-script");
    EXPECT_EQ(application->bundleIdentifier(), std::nullopt);
}

TEST_F(RunningApplicationsTest, TheClassOfTheIconComesBeforeTheProgram) {
    writeEntry("by-program", "Exec=linux_tests\n");
    writeEntry("by-class", "Exec=other\nStartupWMClass=Special\n");
    auto all = applications();
    EXPECT_EQ(all.runningApplication(::getpid())->bundleIdentifier(), "by-program");
    TrayIcon icon;
    icon.pid = ::getpid();
    icon.className = "Special";
    EXPECT_EQ(all.ownerName(icon), "by-class in words");
    EXPECT_EQ(all.runningApplication(::getpid())->bundleIdentifier(), "by-class");
    icon.pid = 0;
    EXPECT_EQ(all.ownerName(icon), std::nullopt);
}

TEST_F(RunningApplicationsTest, OpensAnEntryWithoutAShellAndWithoutAChild) {
    const auto result = folder.path() / "result";
    const auto script = folder.path() / "program";
    std::ofstream(script) << "#!/bin/sh\nprintf '%s|' \"$PWD\" \"$@\" > '" << result.string()
                          << ".part'\nmv '" << result.string() << ".part' '" << result.string()
                          << "'\n";
    std::filesystem::permissions(script, std::filesystem::perms::owner_all);
    writeEntry("starts", "Exec=" + script.string() +
                             " \"a b\" $HOME;x %U %%\nPath=" + folder.path().string() + "\n");
    auto all = applications();
    ASSERT_TRUE(all.open({(folder.path() / "applications/starts.desktop").string()}));
    ASSERT_TRUE(waitFor([&] { return std::filesystem::exists(result); }));
    EXPECT_EQ(contentOf(result), folder.path().string() + "|a b|$HOME;x|%|");
    EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child of ours is left";
}

TEST_F(RunningApplicationsTest, RefusesWhatCannotBeOpened) {
    writeEntry("gone", "Exec=/nowhere/program\n");
    writeEntry("try", "Exec=/bin/true\nTryExec=/nowhere/program\n");
    writeEntry("folder", "Exec=/bin/true\nPath=/nowhere\n");
    writeEntry("broken", "Exec=\"/bin/true\n");
    writeEntry("hidden", "Exec=/bin/true\nHidden=true\n");
    auto all = applications();
    for (const std::string id : {"gone", "try", "folder", "broken", "hidden", "missing"}) {
        EXPECT_FALSE(all.open({(folder.path() / "applications" / (id + ".desktop")).string()}))
            << id;
    }
    EXPECT_FALSE(all.open({"/bin/true"}));
    EXPECT_FALSE(all.open({""}));
}

TEST_F(RunningApplicationsTest, OpensOnlyWhatIsInstalled) {
    const auto result = folder.path() / "result";
    const auto outside = folder.path() / "outside.desktop";
    std::ofstream(outside) << "[Desktop Entry]\nType=Application\nName=Outside\nExec=/bin/touch "
                           << result.string() << "\n";
    writeEntry("inside", "Exec=/bin/true\n");
    auto all = applications();
    EXPECT_FALSE(all.open({outside.string()}));
    EXPECT_FALSE(all.open({(folder.path() / "applications/../outside.desktop").string()}));
    EXPECT_TRUE(all.open({(folder.path() / "applications/inside.desktop").string()}));
    EXPECT_FALSE(std::filesystem::exists(result));
}

TEST_F(RunningApplicationsTest, AWindowsClassIsNoWayToAFile) {
    const auto result = folder.path() / "result";
    const std::string entry = "[Desktop Entry]\nType=Application\nName=Outside\nExec=/bin/touch " +
                              result.string() + "\n";
    writeEntry("inside", "Exec=/bin/true\n");
    std::ofstream(folder.path() / "outside.desktop") << entry;
    const PrivateDisplay display;
    const std::string base = folder.path().string();
    for (const std::string& name :
         {std::string("../outside"), std::string("../outside.desktop"), base + "/outside",
          base + "/outside.desktop", std::string("inside/../../outside"), std::string(";touch x"),
          std::string("[Desktop Entry]")}) {
        auto all = applications(display.name());
        TrayIcon icon;
        icon.window = 1;
        icon.pid = ::getpid();
        icon.name = name;
        icon.instanceName = name;
        icon.className = name;
        EXPECT_EQ(all.ownerName(icon), "linux_tests") << name;
        const auto application = all.runningApplication(::getpid());
        ASSERT_NE(application, nullptr);
        EXPECT_EQ(application->bundleIdentifier(), std::nullopt) << name;
        EXPECT_FALSE(application->bundleUrl()) << name;
        EXPECT_FALSE(application->activate(activateAllWindows)) << name;
    }
    EXPECT_FALSE(std::filesystem::exists(result));
}

TEST_F(RunningApplicationsTest, AProgramWithoutAWindowAndWithoutAnEntryCannotBeActivated) {
    const PrivateDisplay display;
    auto all = applications(display.name());
    EXPECT_FALSE(all.runningApplication(::getpid())->activate(activateAllWindows));
}

TEST_F(RunningApplicationsTest, RaisesAWindowFromItsMinimisedStateAndFromAnotherDesktop) {
    PrivateDisplay display{{.windowManager = true}};
    XClient client(display.name());
    const auto program = display.start({"xmessage", "-title", "raise me", "text"});
    std::optional<xcb_window_t> window;
    ASSERT_TRUE(waitFor([&] {
        window = client.managedWindow("raise me");
        return window && client.isViewable(*window);
    })) << program->output();

    auto all = applications(display.name());
    const auto hide = [&](const std::string& message, std::vector<std::uint32_t> words) {
        words.resize(5);
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = *window;
        event.type = client.atom(message);
        std::ranges::copy(words, event.data.data32);
        xcb_send_event(client.get(), 0, client.root(),
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&event));
        client.sync();
        return waitFor([&] { return !client.isViewable(*window); });
    };
    const auto isActive = [&] {
        const auto active = client.words(client.root(), "_NET_ACTIVE_WINDOW");
        return client.isViewable(*window) && !active.empty() && active[0] == *window;
    };

    ASSERT_TRUE(hide("WM_CHANGE_STATE", {3}));
    EXPECT_TRUE(all.runningApplication(program->pid())->activate(activateAllWindows));
    EXPECT_TRUE(waitFor(isActive));

    ASSERT_TRUE(hide("_NET_WM_DESKTOP", {2, 2}));
    EXPECT_TRUE(all.runningApplication(program->pid())->activate(activateAllWindows));
    EXPECT_TRUE(waitFor(isActive));
}

} // namespace
} // namespace pelistra::testing
