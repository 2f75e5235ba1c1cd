#include "tests/desktop/harness/ChildProcess.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/RealTrayPrograms.h"
#include "tests/desktop/harness/TrayClient.h"
#include "tests/desktop/harness/UserInput.h"
#include "tests/desktop/harness/WaitFor.h"
#include "tests/desktop/harness/XClient.h"

#include <array>
#include <csignal>
#include <memory>

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

// The viewable window of that class that lies inside another client's window.
std::optional<xcb_window_t> dockedWindow(XClient& client, const std::string& className) {
    std::vector<xcb_window_t> unseen = client.children(client.root());
    while (!unseen.empty()) {
        const xcb_window_t window = unseen.back();
        unseen.pop_back();
        if (client.parent(window) != client.root() && client.isViewable(window) &&
            client.windowClass(window).second == className) {
            return window;
        }
        const std::vector<xcb_window_t> children = client.children(window);
        unseen.insert(unseen.end(), children.begin(), children.end());
    }
    return std::nullopt;
}

// What the other desktop tests lean on is itself tried here, against programs that are not ours.
class HarnessTests : public ::testing::Test {
protected:
    PrivateDisplay display_{{.width = 800, .height = 600, .windowManager = true}};
    XClient client_{display_.name()};
};

TEST_F(HarnessTests, AChildsExitStatusAndOutputAreReported) {
    const auto child = display_.start({"sh", "-c", "echo out; echo err >&2; exit 3"});
    EXPECT_EQ(child->waitForExit(), (ExitStatus{.status = 3}));
    EXPECT_EQ(child->output(), "out\nerr\n");
}

TEST_F(HarnessTests, AMissingProgramEndsWithStatus127) {
    const auto child = display_.start({"no-such-program-anywhere"});
    EXPECT_EQ(child->waitForExit(), (ExitStatus{.status = 127}));
}

TEST_F(HarnessTests, KillingAChildEndsItsWholeGroup) {
    const auto child = display_.start({"sh", "-c", "sleep 1000 & echo $!; wait"});
    ASSERT_TRUE(child->waitForOutput("\n"));
    const pid_t grandchild = std::stoi(child->output());
    ASSERT_EQ(kill(grandchild, 0), 0);
    child->kill();
    EXPECT_EQ(child->waitForExit()->killedBySignal, SIGKILL);
    // The orphan is init's to reap; a zombie has no memory map any more.
    EXPECT_TRUE(waitFor([&] { return !proportionalMemory(grandchild); }));
}

TEST_F(HarnessTests, ProgramsSeeNothingOfTheUsersSession) {
    const auto child = display_.start({"env"});
    ASSERT_TRUE(child->waitForExit());
    EXPECT_NE(child->output().find("DISPLAY=" + display_.name() + "\n"), std::string::npos);
    EXPECT_NE(child->output().find("HOME=" + display_.folder().string()), std::string::npos);
    EXPECT_NE(child->output().find("DBUS_SESSION_BUS_ADDRESS=disabled:\n"), std::string::npos);
}

TEST_F(HarnessTests, AClickReachesTheWindowUnderThePointer) {
    const auto viewer = display_.start({"xev", "-geometry", "200x200+100+100", "-event", "button"});
    ASSERT_TRUE(waitFor([&] { return client_.managedWindow("Event Tester").has_value(); }))
        << viewer->output();
    const xcb_window_t window = *client_.managedWindow("Event Tester");
    ASSERT_TRUE(waitFor([&] { return client_.isViewable(window); }));
    const auto frame = client_.frame(window);
    ASSERT_TRUE(frame);
    UserInput input(client_);
    input.click(centre(*frame), UserInput::Button::Left, {keys::shift});
    EXPECT_EQ(client_.pointer().x, frame->midX());
    EXPECT_EQ(client_.pointer().y, frame->midY());
    EXPECT_EQ(client_.pointer().mask, 0);
    EXPECT_TRUE(viewer->waitForOutput("ButtonRelease event")) << viewer->output();
    EXPECT_NE(viewer->output().find("state 0x1, button 1"), std::string::npos) << viewer->output();
}

TEST_F(HarnessTests, StackingIsReadFromTheServer) {
    TrayClient lower(display_.name(), {.name = "Lower"});
    const TrayClient upper(display_.name(), {.name = "Upper"});
    EXPECT_TRUE(client_.isAbove(upper.window(), lower.window()));
    EXPECT_FALSE(client_.isAbove(lower.window(), upper.window()));
    lower.destroyWindow();
    EXPECT_FALSE(client_.isAbove(upper.window(), lower.window()));
}

TEST_F(HarnessTests, APictureShowsWhatIsOnTheScreen) {
    TrayClient plain(display_.name(), {.width = 50, .height = 40, .colour = 0x123456});
    const std::array<std::uint32_t, 1> unmanaged{1};
    xcb_change_window_attributes(plain.x().get(), plain.window(), XCB_CW_OVERRIDE_REDIRECT,
                                 unmanaged.data());
    const Picture before = client_.captureRoot();
    xcb_map_window(plain.x().get(), plain.window());
    plain.x().sync();
    const auto frame = client_.frame(plain.window());
    ASSERT_TRUE(frame);
    constexpr std::size_t area = std::size_t{50} * 40;
    EXPECT_TRUE(waitFor([&] { return client_.capture(*frame).pixelsOf(0x123456) == area; }));
    EXPECT_EQ(before.differingPixels(client_.captureRoot()), area);
    EXPECT_EQ(client_.capture(*frame).colours(), 1U);
    const std::filesystem::path file = display_.folder() / "screen.png";
    client_.captureRoot().savePng(file);
    EXPECT_GT(std::filesystem::file_size(file), 100U);
}

TEST_F(HarnessTests, ATrayClientDocksInAForeignTray) {
    TrayClient icon(display_.name(), {.name = "Probe"});
    EXPECT_FALSE(icon.requestDock());
    const auto tray = display_.start({"trayer"});
    ASSERT_TRUE(waitFor([&] { return client_.trayOwner() != XCB_WINDOW_NONE; }));
    ASSERT_TRUE(icon.requestDock());
    ASSERT_TRUE(icon.waitUntilDocked()) << tray->output();
    EXPECT_EQ(client_.title(icon.window()), "Probe");
    EXPECT_EQ(client_.windowClass(icon.window()),
              (std::pair<std::string, std::string>("Probe", "Probe")));
    EXPECT_TRUE(client_.barItems().empty());
    icon.die();
    EXPECT_TRUE(waitFor([&] { return !client_.exists(icon.window()); }));
}

TEST_F(HarnessTests, TheServerAndItsClientsEndWithTheDisplay) {
    auto other = std::make_unique<PrivateDisplay>();
    const pid_t server = other->serverPid();
    EXPECT_NE(other->name(), display_.name());
    EXPECT_EQ(kill(server, 0), 0);
    const std::filesystem::path folder = other->folder();
    other.reset();
    EXPECT_NE(kill(server, 0), 0);
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(HarnessTests, ASessionBusIsThereWhenAskedFor) {
    PrivateDisplay withBus({.sessionBus = true});
    const auto child =
        withBus.start({"dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.DBus",
                       "/org/freedesktop/DBus", "org.freedesktop.DBus.GetId"});
    EXPECT_EQ(child->waitForExit(), (ExitStatus{.status = 0})) << child->output();
}

// Every program of the table, alone on a display with a tray that is not ours.
class RealTrayProgramTests : public ::testing::TestWithParam<RealTrayProgram> {};

TEST_P(RealTrayProgramTests, ShowsItsIconInAForeignTray) {
    PrivateDisplay display(
        {.width = 800, .height = 600, .windowManager = true, .sessionBus = true});
    XClient client(display.name());
    const auto tray = display.start({"trayer"});
    ASSERT_TRUE(waitFor([&] { return client.trayOwner() != XCB_WINDOW_NONE; }));
    const auto program = startTrayProgram(display, GetParam());
    EXPECT_TRUE(waitFor([&] { return dockedWindow(client, GetParam().className).has_value(); }))
        << program->output();
    program->terminate(std::chrono::seconds(1));
}

INSTANTIATE_TEST_SUITE_P(All, RealTrayProgramTests, ::testing::ValuesIn(realTrayPrograms()),
                         [](const auto& test) {
                             std::string name = test.param.program;
                             std::erase(name, '-');
                             return name;
                         });

TEST(WaitForTests, ACountOfWakeUpsGrowsWithASleepersSleeps) {
    const TemporaryFolder folder;
    ChildProcess sleeper({"sh", "-c", "while :; do sleep 0.01; done"}, {{"PATH", "/bin:/usr/bin"}},
                         folder.path() / "log");
    const auto first = wakeUps(sleeper.pid());
    ASSERT_TRUE(first);
    EXPECT_TRUE(waitFor([&] { return wakeUps(sleeper.pid()) > *first + 3; }));
    sleeper.kill();
    EXPECT_FALSE(wakeUps(sleeper.pid()));
}

TEST(WaitForTests, AConditionThatNeverHoldsEndsWithTheBound) {
    EXPECT_FALSE(waitFor([] { return false; }, std::chrono::milliseconds(20)));
    EXPECT_TRUE(waitFor([] { return true; }, std::chrono::milliseconds(0)));
    EXPECT_TRUE(staysTrue([] { return true; }, std::chrono::milliseconds(20)));
    EXPECT_FALSE(staysTrue([] { return false; }, std::chrono::milliseconds(20)));
}

} // namespace
} // namespace pelistra::testing
