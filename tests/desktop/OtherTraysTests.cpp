// The organiser in the trays of other desktops, and our bar in their place.

#include "tests/desktop/harness/NotificationServer.h"
#include "tests/desktop/harness/OtherTrays.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/UserInput.h"

#include <algorithm>
#include <ostream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::ContainsRegex;
using ::testing::HasSubstr;
using ::testing::SizeIs;

struct Rival {
    OtherTray tray;
    // An expression for what a process that owns the tray selection calls itself.
    std::string owner;
    // It is a window manager as well.
    bool manages = false;
};

void PrintTo(const Rival& rival, std::ostream* stream) {
    *stream << rival.tray.name;
}

// Trays that make no room for an item that grows.
std::vector<Rival> rivals() {
    return {{.tray = {.name = "tint2", .command = {"tint2"}}, .owner = "tint2"},
            {.tray = {.name = "i3",
                      .command = {"i3"},
                      .settings = {{.path = "config/i3/config",
                                    .content = "font pango:monospace 8\nbar {\n}\n"}}},
             .owner = "i3bar",
             .manages = true},
            {.tray = {.name = "xfce4-panel",
                      .command = {"xfce4-panel"},
                      .settings = {xfcePanelSettings(XfceIcons::Shown)}},
             // Newer versions are named as a whole.
             .owner = "panel-[0-9]+-systray|xfce4-panel"}};
}

std::optional<xcb_window_t> windowBelow(XClient& client, xcb_window_t parent,
                                        const std::string& title) {
    for (const xcb_window_t child : client.children(parent)) {
        if (client.title(child) == title) {
            return child;
        }
        if (const auto found = windowBelow(client, child, title)) {
            return found;
        }
    }
    return std::nullopt;
}

class OtherTraysTest : public ::testing::TestWithParam<Rival> {
protected:
    void SetUp() override {
        OrganiserUnderTest::completeOnboarding(display_);
        tray_ = startOtherTray(display_, GetParam().tray);
        ASSERT_TRUE(waitFor([this] { return client_.trayOwner() != XCB_WINDOW_NONE; }))
            << tray_->output();
        organiser_.emplace(display_, client_, std::vector<std::string>(),
                           OrganiserUnderTest::WaitForItems::No);
    }

    [[nodiscard]] WindowFrame frameOf(const std::string& item) {
        const auto window = windowBelow(client_, client_.root(), item);
        const bool isShown = window && client_.isViewable(*window);
        return isShown ? client_.frame(*window).value_or(WindowFrame{}) : WindowFrame{};
    }
    [[nodiscard]] WindowFrame arrow() { return frameOf(OrganiserUnderTest::controlName); }
    [[nodiscard]] bool isInOrder() {
        const WindowFrame divider = frameOf(OrganiserUnderTest::dividerName);
        return divider.width > 0 && divider.x >= 0 && divider.x < arrow().x &&
               arrow().x < client_.rootFrame().width;
    }

    PrivateDisplay display_{{.windowManager = !GetParam().manages, .sessionBus = true}};
    XClient client_{display_.name()};
    UserInput input_{client_};
    NotificationServer server_{display_.environment().at("DBUS_SESSION_BUS_ADDRESS")};
    std::unique_ptr<ChildProcess> tray_;
    std::optional<OrganiserUnderTest> organiser_;
};

TEST_P(OtherTraysTest, SaysWhoseTrayItIsAndHidesIconsOnceOursHasReplacedIt) {
    ASSERT_TRUE(waitFor([this] { return isInOrder(); })) << organiser_->process().output();
    input_.click(centre(arrow()));
    ASSERT_TRUE(waitFor([this] {
        server_.handleEvents();
        return !server_.shown().empty();
    })) << organiser_->process().output();
    EXPECT_THAT(server_.shown().front().body, ContainsRegex(GetParam().owner));
    EXPECT_THAT(organiser_->process().output(), HasSubstr(server_.shown().front().body));
    // The tray shows what it showed.
    EXPECT_TRUE(waitFor([this] { return isInOrder(); }));
    input_.click(centre(arrow()), UserInput::Button::Left, {keys::alt});

    BarUnderTest bar(display_, client_, {"--replace", "--no-status-notifier"});
    ASSERT_TRUE(waitFor([this] { return organiser_->controlFrame().has_value(); }));
    EXPECT_TRUE(waitFor([this] {
        input_.click(centre(arrow()));
        return waitFor([this] { return organiser_->isCollapsed(); },
                       std::chrono::milliseconds(1000));
    })) << organiser_->process().output();
    server_.handleEvents();
    EXPECT_THAT(server_.shown(), SizeIs(1));
}

INSTANTIATE_TEST_SUITE_P(Trays, OtherTraysTest, ::testing::ValuesIn(rivals()),
                         [](const auto& tested) {
                             std::string name = tested.param.tray.name;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
} // namespace pelistra::testing
