#include "platform/linux/programs/X11RunningApplications.h"
#include "platform/posix/Environment.h"

#include "platform/linux/images/LinuxImage.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/WaitFor.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <unistd.h>

namespace pelistra::testing {
namespace {

using linux::X11RunningApplications;

void writeProgram(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
}

// An application of its own on the session bus: it counts how often it is activated.
constexpr const char* service = R"(#!/usr/bin/python3
import sys
from gi.repository import Gio
application = Gio.Application(application_id=sys.argv[1],
                              flags=Gio.ApplicationFlags.IS_SERVICE)
def activated(_):
    with open(sys.argv[2], "a") as file:
        file.write("activated\n")
application.connect("activate", activated)
application.hold()
application.run([])
)";

class LaunchTest : public ::testing::Test {
protected:
    static constexpr const char* id = "org.example.Activated-One";

    [[nodiscard]] std::filesystem::path file(const std::string& name) const {
        return display.folder() / name;
    }
    // Opens an entry of that id with these lines.
    [[nodiscard]] bool open(const std::string& lines) {
        const auto entries = file("applications");
        std::filesystem::create_directories(entries);
        const auto path = entries / (std::string(id) + ".desktop");
        std::ofstream(path) << "[Desktop Entry]\nType=Application\nName=Activated\n" << lines;
        // Read anew each time.
        applications.emplace_back(std::make_unique<X11RunningApplications>(
            display.name(), linux::DesktopEntryPlaces{.folders = {entries}}));
        return applications.back()->open({path.string()});
    }
    [[nodiscard]] std::string touch() const {
        return "Exec=/bin/touch " + executed.string() + "\n";
    }
    // Says to the bus that it can start a program under the entry's name.
    void install(const std::string& command) {
        const auto services = file("data") / "dbus-1" / "services";
        std::filesystem::create_directories(services);
        std::ofstream(services / (std::string(id) + ".service"))
            << "[D-BUS Service]\nName=" << id << "\nExec=" << command << "\n";
        const auto reload = display.start(
            {"/usr/bin/python3", "-c",
             "from gi.repository import Gio\n"
             "Gio.bus_get_sync(Gio.BusType.SESSION).call_sync('org.freedesktop.DBus', "
             "'/org/freedesktop/DBus', 'org.freedesktop.DBus', 'ReloadConfig', None, None, 0, "
             "-1)\n"});
        ASSERT_EQ(reload->waitForExit(), ExitStatus{.status = 0}) << reload->output();
    }
    [[nodiscard]] std::vector<std::string> serviceCommand() {
        writeProgram(file("service"), service);
        return {file("service").string(), id, activated.string()};
    }
    [[nodiscard]] bool wasActivated(int times) const {
        return waitFor([&] {
            const std::string text = contentOf(activated);
            return std::ranges::count(text, '\n') == times;
        });
    }

    PrivateDisplay display{{.sessionBus = true}};
    posix::Variable bus{"DBUS_SESSION_BUS_ADDRESS",
                        display.environment().at("DBUS_SESSION_BUS_ADDRESS")};
    posix::Variable runtime{"XDG_RUNTIME_DIR", display.environment().at("XDG_RUNTIME_DIR")};
    // They live on, as they do in a program that has opened something.
    std::vector<std::unique_ptr<X11RunningApplications>> applications;
    std::filesystem::path activated = file("activated");
    std::filesystem::path executed = file("executed");
};

TEST_F(LaunchTest, ABusServiceIsStartedAndActivatedInsteadOfTheCommand) {
    const auto command = serviceCommand();
    install(command[0] + " " + command[1] + " " + command[2]);
    const std::string entry = "DBusActivatable=true\n" + touch();
    EXPECT_TRUE(open(entry));
    EXPECT_TRUE(wasActivated(1));
    EXPECT_TRUE(open(entry));
    EXPECT_TRUE(wasActivated(2));
    EXPECT_FALSE(std::filesystem::exists(executed));
    // An entry of this kind needs no command.
    EXPECT_TRUE(open("DBusActivatable=true\n"));
    EXPECT_TRUE(wasActivated(3));
}

TEST_F(LaunchTest, AProgramThatIsOnTheBusAlreadyIsActivated) {
    const auto program = display.start(serviceCommand());
    // Until it has its name, the command would be run.
    EXPECT_TRUE(waitFor([&] { return open("DBusActivatable=true\n"); })) << program->output();
    EXPECT_TRUE(waitFor([&] { return contentOf(activated) == "activated\n"; }));
    EXPECT_TRUE(open("DBusActivatable=true\n" + touch()));
    EXPECT_TRUE(wasActivated(2));
    EXPECT_FALSE(std::filesystem::exists(executed));
}

TEST_F(LaunchTest, TheBusIsLeftAloneByAnEntryThatDoesNotSpeakOfIt) {
    const auto command = serviceCommand();
    install(command[0] + " " + command[1] + " " + command[2]);
    EXPECT_TRUE(open(touch()));
    EXPECT_TRUE(waitFor([&] { return std::filesystem::exists(executed); }));
    EXPECT_FALSE(std::filesystem::exists(activated));
}

TEST_F(LaunchTest, ABusThatKnowsNoSuchServiceLeavesTheCommand) {
    EXPECT_TRUE(open("DBusActivatable=true\n" + touch()));
    EXPECT_TRUE(waitFor([&] { return std::filesystem::exists(executed); }));
    EXPECT_FALSE(open("DBusActivatable=true\n")) << "nothing is left to try";
}

TEST_F(LaunchTest, WithoutABusThereIsTheCommand) {
    const posix::Variable nowhere("DBUS_SESSION_BUS_ADDRESS",
                                  "unix:path=" + file("nowhere").string());
    EXPECT_TRUE(open("DBusActivatable=true\n" + touch()));
    EXPECT_TRUE(waitFor([&] { return std::filesystem::exists(executed); }));
    EXPECT_FALSE(open("DBusActivatable=true\n"));
}

TEST_F(LaunchTest, ABusThatWasStartedAnewIsFound) {
    const std::string address = "unix:path=" + file("another").string();
    const posix::Variable another("DBUS_SESSION_BUS_ADDRESS", address);
    const auto startBus = [&] {
        auto started = display.start({"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                      "--print-address=1", "--address=" + address});
        EXPECT_TRUE(started->waitForOutput("unix:path")) << started->output();
        return started;
    };
    auto running = startBus();
    ASSERT_TRUE(open("DBusActivatable=true\n" + touch()));
    ASSERT_TRUE(waitFor([&] { return std::filesystem::exists(executed); }));
    running->kill();
    std::filesystem::remove(file("another"));
    running = startBus();
    display.setEnvironment("DBUS_SESSION_BUS_ADDRESS", address);
    const auto onNewBus = display.start(serviceCommand());
    const auto url = (file("applications") / (std::string(id) + ".desktop")).string();
    EXPECT_TRUE(waitFor([&] {
        return applications.front()->open({url}) && !contentOf(activated).empty();
    })) << onNewBus->output();
}

TEST_F(LaunchTest, AProgramForTerminalsRunsInOne) {
    writeProgram(file("bin/x-terminal-emulator"),
                 "#!/bin/sh\nprintf '%s|' \"$@\" > '" + executed.string() + ".part'\nmv '" +
                     executed.string() + ".part' '" + executed.string() + "'\n");
    writeProgram(file("bin/tool"), "#!/bin/sh\n");
    const std::string entry = "Terminal=true\nExec=tool \"two words\" $HOME\n";
    {
        const posix::Variable path("PATH", file("bin").string() + ":/usr/bin:/bin");
        EXPECT_TRUE(open(entry));
        EXPECT_TRUE(waitFor([&] { return std::filesystem::exists(executed); }));
        EXPECT_EQ(contentOf(executed), "-e|" + file("bin/tool").string() + "|two words|$HOME|");
    }
    std::filesystem::remove(file("bin/x-terminal-emulator"));
    const posix::Variable path("PATH", file("bin").string());
    EXPECT_FALSE(open(entry)) << "there is no terminal";
    EXPECT_FALSE(open("Terminal=true\nExec=missing\n"));
}

// The icon of this very process, by an entry with that icon.
ImagePtr iconWith(X11RunningApplications& applications) {
    const auto self = applications.runningApplication(::getpid());
    return self ? self->icon() : nullptr;
}

TEST(EntryIconTest, IsNamedByTheEntryUntilItIsFoundMissing) {
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "own.desktop")
        << "[Desktop Entry]\nType=Application\nName=Own\nExec=linux_tests\nIcon=known\n";
    X11RunningApplications applications({}, {.folders = {folder.path()}});
    const ImagePtr image = iconWith(applications);
    const auto* const icon = dynamic_cast<const linux::ThemeIcon*>(image.get());
    ASSERT_NE(icon, nullptr);
    EXPECT_EQ(icon->name, "known");
    EXPECT_EQ(iconWith(applications), image);
    icon->isMissing = true;
    EXPECT_EQ(iconWith(applications), nullptr);
}

TEST(EntryIconTest, AnEntryWithoutAnIconHasNone) {
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "own.desktop")
        << "[Desktop Entry]\nType=Application\nName=Own\nExec=linux_tests\n";
    X11RunningApplications applications({}, {.folders = {folder.path()}});
    EXPECT_EQ(iconWith(applications), nullptr);
}

} // namespace
} // namespace pelistra::testing
