// The running organiser in trays that make no room for what is to be hidden.

#include "platform/linux/statusitem/TrayAdvice.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/NotificationServer.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/UserInput.h"
#include "tests/linux/statusitem/RespondingTray.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace pelistra::testing {

namespace {

using ::testing::HasSubstr;
using ::testing::SizeIs;
using Button = UserInput::Button;
using Order = RespondingTray::Order;

constexpr auto english = "which makes no room";
constexpr auto chinese = "不会为隐藏的图标让出位置";
constexpr auto remedy = "pelistra-menubar --replace";
constexpr int screenWidth = 1280;

class ForeignTrayTest : public ::testing::Test {
protected:
    ForeignTrayTest() {
        const auto defaults = display_.configFolder() / "pelistra" / "defaults";
        std::filesystem::create_directories(defaults.parent_path());
        std::ofstream(defaults) << "[Defaults]\nhasCompletedOnboarding." PELISTRA_VERSION "=true\n";
    }

    void start(Order order, const Environment& environment = {}) {
        tray_ = std::make_unique<RespondingTray>(
            display_.name(), RespondingTray::Options{.menuBarScale = std::nullopt, .order = order});
        process_ = display_.start({(builtPrograms() / "pelistra").string()}, environment);
        ASSERT_TRUE(tray_->waitFor([this] { return isInOrder(); })) << process_->output();
    }
    [[nodiscard]] std::optional<WindowFrame> frameOf(const std::string& item) {
        for (const xcb_window_t icon : tray_->docked()) {
            if (tray_->x().title(icon) == item && tray_->x().isViewable(icon)) {
                return tray_->frameOf(icon);
            }
        }
        return std::nullopt;
    }
    [[nodiscard]] std::optional<WindowFrame> arrow() { return frameOf("PelistraV3.Control"); }
    [[nodiscard]] std::optional<WindowFrame> divider() { return frameOf("PelistraV3.Divider"); }
    [[nodiscard]] bool isInOrder() {
        const auto left = divider();
        const auto right = arrow();
        return left && right && left->x < right->x;
    }
    void click(const UserInput::Modifiers& modifiers = {}) {
        input_.click(centre(arrow().value()), Button::Left, modifiers);
    }
    [[nodiscard]] std::size_t said(const std::string& text) {
        return process_->occurrencesOf(text);
    }
    [[nodiscard]] bool waitForText(const std::string& text) {
        return tray_->waitFor([&] { return said(text) > 0; });
    }

    PrivateDisplay display_{{.sessionBus = true}};
    XClient client_{display_.name()};
    UserInput input_{client_};
    std::unique_ptr<RespondingTray> tray_;
    std::unique_ptr<ChildProcess> process_;
};

const std::vector<std::string> orderNames{"FromRightEdge", "FromLeftEdge", "ByName"};

class OrderTest : public ForeignTrayTest, public ::testing::WithParamInterface<Order> {};

TEST_P(OrderTest, TheDividerIsLeftOfTheArrow) {
    start(GetParam());
    // What is in order stays as it is.
    const auto docked = tray_->docked();
    tray_->serve(std::chrono::milliseconds(1500));
    EXPECT_EQ(tray_->docked(), docked);
    click();
    EXPECT_TRUE(waitForText("Collapsed divider"));
}

INSTANTIATE_TEST_SUITE_P(
    Orders, OrderTest, ::testing::Values(Order::FromRightEdge, Order::FromLeftEdge, Order::ByName),
    [](const auto& row) { return orderNames.at(static_cast<int>(row.param)); });

TEST_F(ForeignTrayTest, ATrayThatGivesNoRoomIsNamedOnce) {
    NotificationServer server(display_.environment().at("DBUS_SESSION_BUS_ADDRESS"));
    // Servers take the text for markup.
    ASSERT_EQ(::prctl(PR_SET_NAME, "a <b>&"), 0);
    start(Order::FromRightEdge);
    tray_->setGranting(false);
    EXPECT_EQ(said(remedy), 0U);
    for (int round = 0; round < 2; ++round) {
        click();
        EXPECT_TRUE(tray_->waitFor([&] {
            server.handleEvents();
            return said(english) > 0 && !server.shown().empty();
        }));
        tray_->serve(std::chrono::milliseconds(1500));
        server.handleEvents();
        click({keys::alt});
        EXPECT_TRUE(tray_->waitFor([&] { return said("Expanded hidden section") > 1U + round; }));
    }
    EXPECT_EQ(said("pelistra: The system tray belongs to a <b>&, which makes no room for what is "
                   "to be hidden. Switch its tray off, or run: pelistra-menubar --replace\n"),
              1U);
    EXPECT_EQ(said(remedy), 1U);
    ASSERT_THAT(server.shown(), SizeIs(1));
    const auto& shown = server.shown().front();
    EXPECT_EQ(shown.application, "Pelistra");
    EXPECT_EQ(shown.summary, "Pelistra cannot hide icons in this tray");
    EXPECT_THAT(shown.body, HasSubstr("belongs to a &lt;b&gt;&amp;, which"));
    EXPECT_THAT(shown.body, HasSubstr(remedy));
    // Nothing is left that could wake it.
    EXPECT_TRUE(waitFor([&] { return !server.isConnected(shown.sender); }));
    const auto before = wakeUps(process_->pid());
    tray_->serve(std::chrono::milliseconds(2000));
    EXPECT_EQ(wakeUps(process_->pid()), before);
}

TEST_F(ForeignTrayTest, AnArrowThatIsPushedOffTheScreenComesBack) {
    start(Order::FromLeftEdge);
    click();
    EXPECT_TRUE(waitForText(english));
    EXPECT_GE(tray_->farthest(), screenWidth);
    EXPECT_TRUE(tray_->waitFor([this] { return arrow() && arrow()->x < screenWidth; }));
    click({keys::alt});
    EXPECT_TRUE(tray_->waitFor([this] { return said("Expanded hidden section") == 2; }));
}

TEST_F(ForeignTrayTest, ATrayThatMakesRoomIsLeftAlone) {
    start(Order::FromRightEdge);
    click();
    EXPECT_TRUE(tray_->waitFor([this] { return divider()->width == 2 * screenWidth; }));
    tray_->serve(std::chrono::milliseconds(1500));
    EXPECT_EQ(divider()->width, 2 * screenWidth);
    EXPECT_EQ(said(remedy), 0U);
}

// Where the user's messages come from.
struct Locale {
    std::string name;
    Environment variables;
    std::string expected;
};

class AdviceLocaleTest : public ForeignTrayTest, public ::testing::WithParamInterface<Locale> {};

TEST_P(AdviceLocaleTest, TheAdviceIsInTheUsersLanguageAndTheLogInEnglish) {
    start(Order::FromRightEdge, GetParam().variables);
    tray_->setGranting(false);
    click();
    EXPECT_TRUE(waitForText(GetParam().expected));
    EXPECT_EQ(said(remedy), 1U);
    EXPECT_THAT(process_->output(), HasSubstr("[status-bar] Collapsed divider to length"));
}

INSTANTIATE_TEST_SUITE_P(
    Locales, AdviceLocaleTest,
    ::testing::Values(
        Locale{"Lang", {{"LANG", "zh_CN.UTF-8"}}, chinese},
        Locale{"Messages", {{"LANG", "en_GB.UTF-8"}, {"LC_MESSAGES", "zh_TW.UTF-8"}}, chinese},
        Locale{"All",
               {{"LANG", "zh_CN.UTF-8"}, {"LC_MESSAGES", "zh_CN.UTF-8"}, {"LC_ALL", "de_DE.UTF-8"}},
               english}),
    [](const auto& row) { return row.param.name; });

TEST(TrayAdviceTest, SaysSoWhenItDoesNotKnowWhoseTrayItIs) {
    EXPECT_THAT(linux::adviceAbout("", false).body, HasSubstr("belongs to another program,"));
    EXPECT_THAT(linux::adviceAbout("", true).body, HasSubstr("属于另一个程序，"));
    EXPECT_THAT(linux::adviceAbout("i3bar", true).body, HasSubstr("属于 i3bar，"));
}

// A bus that takes connections and never says a word.
class SilentBus {
public:
    explicit SilentBus(const std::filesystem::path& path)
        : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(socket_, 1), 0);
    }
    SilentBus(const SilentBus&) = delete;
    SilentBus& operator=(const SilentBus&) = delete;
    ~SilentBus() { ::close(socket_); }

private:
    int socket_;
};

enum class Silence : std::uint8_t { NoBus, Bus, Server };

const std::vector<std::string> silenceNames{"NoBus", "Bus", "Server"};

class SilentNotificationTest : public ForeignTrayTest,
                               public ::testing::WithParamInterface<Silence> {
protected:
    // The environment in which nobody shows notifications.
    [[nodiscard]] Environment silence() {
        const std::string usual = display_.environment().at("DBUS_SESSION_BUS_ADDRESS");
        switch (GetParam()) {
        case Silence::Bus: {
            const auto path = display_.folder() / "silent";
            bus_.emplace(path);
            return {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=" + path.string()}};
        }
        case Silence::Server:
            server_.emplace(usual);
            server_->setAnswering(false);
            return {};
        case Silence::NoBus:
            break;
        }
        return {{"DBUS_SESSION_BUS_ADDRESS", "disabled:"}};
    }

    std::optional<SilentBus> bus_;
    std::optional<NotificationServer> server_;
};

TEST_P(SilentNotificationTest, HoldsNobodyUp) {
    start(Order::FromRightEdge, silence());
    tray_->setGranting(false);
    click();
    EXPECT_TRUE(waitForText(english));
    // It goes on.
    const auto docked = tray_->docked();
    tray_->eject(docked.back());
    EXPECT_TRUE(tray_->waitFor([&] { return isInOrder() && tray_->docked() != docked; }));
    process_->signal(SIGTERM);
    EXPECT_EQ(process_->waitForExit(std::chrono::milliseconds(2000)), ExitStatus{.status = 0});
}

INSTANTIATE_TEST_SUITE_P(Silences, SilentNotificationTest,
                         ::testing::Values(Silence::NoBus, Silence::Bus, Silence::Server),
                         [](const auto& row) {
                             return silenceNames.at(static_cast<int>(row.param));
                         });

} // namespace

} // namespace pelistra::testing
