#include "platform/linux/screens/X11Screens.h"

#include "platform/linux/loop/GlibMainQueue.h"
#include "tests/contract/ScreensContract.h"
#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/linux/loop/RunUntil.h"
#include "tests/linux/statusitem/RespondingTray.h"
#include "tests/platform/FakeLogSink.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using ::testing::Optional;
using ::testing::SizeIs;

class X11ScreensBackend {
public:
    // Both monitors lie on the display from the start, one of them unused.
    X11ScreensBackend() { setMonitor("*Left", "1280/100x800/100+0+0", "screen"); }

    [[nodiscard]] Screens& screens() { return screens_; }
    void addScreen() { setMonitor("Right", "640/100x480/100+1280+0", "none"); }
    template <class Condition>
    [[nodiscard]] static bool runUntil(Condition condition) {
        return testing::runUntil(condition);
    }

private:
    void setMonitor(const std::string& name, const std::string& frame, const std::string& output) {
        EXPECT_THAT(display_.start({"xrandr", "--setmonitor", name, frame, output})->waitForExit(),
                    Optional(ExitStatus{.status = 0}));
    }

    PrivateDisplay display_{{.width = 1920, .height = 800}};
    Journal journal_;
    FakeLogSink log_{journal_};
    linux::GlibMainQueue queue_;
    std::unique_ptr<x11::Connection> connection_ = connect(display_);
    linux::EventPump pump_{*connection_, log_};
    linux::TrayHost trayHost_{*connection_, pump_, log_};
    linux::X11Screens screens_{*connection_, pump_, trayHost_, queue_};
};
INSTANTIATE_TYPED_TEST_SUITE_P(X11, ScreensContract, X11ScreensBackend);

class X11ScreensTests : public ::testing::Test {
protected:
    PrivateDisplay display_;
    XClient client_{display_.name()};
    Journal journal_;
    FakeLogSink log_{journal_};
    linux::GlibMainQueue queue_;
    std::unique_ptr<x11::Connection> connection_ = connect(display_);
    linux::EventPump pump_{*connection_, log_};
    linux::TrayHost trayHost_{*connection_, pump_, log_};
    linux::X11Screens screens_{*connection_, pump_, trayHost_, queue_};
};

TEST_F(X11ScreensTests, TheWholeRootIsOneScreenOnASimpleServer) {
    const auto screens = screens_.screens();
    ASSERT_THAT(screens, SizeIs(1));
    EXPECT_EQ(screens[0].frame, makeRect<ScreenSpace>(0, 0, 1280, 800));
    EXPECT_THAT(screens_.main(), Optional(screens[0]));
}

TEST_F(X11ScreensTests, TheScreensStayWhileTheServerDoesNotAnswer) {
    const auto screens = screens_.screens();
    const auto origin = screens_.coordinates().toScreen(0, 0);
    connection_->setPatience(std::chrono::milliseconds(100));
    ::kill(display_.serverPid(), SIGSTOP);
    EXPECT_EQ(screens_.screens(), screens);
    EXPECT_EQ(screens_.main(), screens.front());
    EXPECT_EQ(screens_.coordinates().toScreen(0, 0), origin);
    ::kill(display_.serverPid(), SIGCONT);
}

TEST_F(X11ScreensTests, MonitorsComeAndAreToldOnce) {
    int changes = 0;
    const auto token = screens_.observeParameterChanges([&] { ++changes; });
    const auto xrandr = [this](const std::vector<std::string>& options) {
        std::vector<std::string> command{"xrandr"};
        command.insert(command.end(), options.begin(), options.end());
        EXPECT_THAT(display_.start(command)->waitForExit(), Optional(ExitStatus{.status = 0}));
    };
    xrandr({"--setmonitor", "Right", "640/100x800/100+640+0", "none"});
    xrandr({"--setmonitor", "*Left", "640/100x800/100+0+0", "screen"});
    EXPECT_TRUE(runUntil([&] { return screens_.screens().size() == 2 && changes > 0; }));
    const auto screens = screens_.screens();
    ASSERT_THAT(screens, SizeIs(2));
    EXPECT_EQ(screens[0].frame, makeRect<ScreenSpace>(0, 0, 640, 800));
    EXPECT_EQ(screens[1].frame, makeRect<ScreenSpace>(640, 0, 640, 800));
}

TEST_F(X11ScreensTests, ATokenThatDiedIsNotTold) {
    int changes = 0;
    int others = 0;
    auto token = screens_.observeParameterChanges([&] { ++changes; });
    const auto other = screens_.observeParameterChanges([&] { ++others; });
    token.reset();
    const RespondingTray tray(display_.name(), {.menuBarScale = 200});
    EXPECT_TRUE(runUntil([&] { return others > 0; }));
    EXPECT_EQ(changes, 0);
}

TEST_F(X11ScreensTests, TheBarsScaleMakesThePointsAndItsChangeIsTold) {
    RespondingTray tray(display_.name(), {.menuBarScale = 200});
    int changes = 0;
    const auto token = screens_.observeParameterChanges([&] { ++changes; });
    EXPECT_TRUE(runUntil([&] { return changes == 1; }));
    EXPECT_EQ(screens_.screens().at(0).frame, makeRect<ScreenSpace>(0, 0, 640, 400));
    tray.setMenuBarScale(100);
    EXPECT_TRUE(runUntil([&] { return changes == 2; }));
    EXPECT_EQ(screens_.screens().at(0).frame, makeRect<ScreenSpace>(0, 0, 1280, 800));
}

TEST_F(X11ScreensTests, TheBarPublishesTheAreasBesideTheHousing) {
    const RespondingTray tray(display_.name());
    int changes = 0;
    const auto token = screens_.observeParameterChanges([&] { ++changes; });
    const std::array<std::uint32_t, 8> areas{0, 0, 540, 28, 740, 0, 540, 28};
    x11::setWords(client_.connection(), tray.owner(),
                  client_.atom("_PELISTRA_MENUBAR_AUXILIARY_AREAS"), XCB_ATOM_CARDINAL, areas);
    client_.sync();
    EXPECT_TRUE(runUntil(
        [&] { return changes > 0 && screens_.screens().at(0).auxiliaryTopLeftArea.has_value(); }));
    const auto screen = screens_.screens().at(0);
    EXPECT_THAT(screen.auxiliaryTopLeftArea, Optional(makeRect<ScreenSpace>(0, 772, 540, 28)));
    EXPECT_THAT(screen.auxiliaryTopRightArea, Optional(makeRect<ScreenSpace>(740, 772, 540, 28)));
}

TEST_F(X11ScreensTests, WithoutABarTheUsersResolutionIsTheScale) {
    x11::setText(client_.connection(), client_.root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING,
                 "Xft.dpi:\t144\n");
    client_.sync();
    EXPECT_DOUBLE_EQ(trayHost_.scale(), 1.5);
    EXPECT_DOUBLE_EQ(screens_.coordinates().scale(), 1.5);
}

TEST_F(X11ScreensTests, MalformedPropertiesOfATrayCountAsAbsent) {
    RespondingTray tray(display_.name());
    const auto set = [&](const char* property, const std::vector<std::uint32_t>& words) {
        x11::setWords(client_.connection(), tray.owner(), client_.atom(property), XCB_ATOM_CARDINAL,
                      words);
    };
    set("_PELISTRA_MENUBAR_SCALE", {0});
    set("_PELISTRA_MENUBAR_AUXILIARY_AREAS", {1, 2, 3});
    set("_NET_SYSTEM_TRAY_COLORS", {0xffffffff, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    set("_PELISTRA_MENUBAR_WINDOW", {0x1234});
    client_.sync();
    EXPECT_TRUE(runUntil([&] {
        return trayHost_.tray() && !trayHost_.tray()->scale && !trayHost_.tray()->foreground &&
               trayHost_.tray()->barWindow == XCB_WINDOW_NONE;
    }));
    EXPECT_THAT(screens_.screens(), SizeIs(1));
    EXPECT_EQ(screens_.screens()[0].auxiliaryTopLeftArea, std::nullopt);
}

} // namespace

} // namespace pelistra::testing
