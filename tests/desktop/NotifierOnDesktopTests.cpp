// Icons of the session bus under the organiser: hidden, pictured and clicked like any other.

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/NotifierClient.h"
#include "tests/desktop/harness/SecondRowUnderTest.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::SizeIs;

constexpr std::uint32_t green = 0xFF00A000;
constexpr std::uint32_t colorBits = 0xFFFFFF;
constexpr int iconSide = 22;

NotifierClient::Options greenIcon(PrivateDisplay& display) {
    NotifierClient::Options options;
    options.address = display.environment().at("DBUS_SESSION_BUS_ADDRESS");
    options.id = "green";
    options.pixmaps = {NotifierClient::plainPixmap(iconSide, green)};
    return options;
}

class NotifierOnDesktopTests : public ::testing::Test {
protected:
    void SetUp() override {
        desktop_.startBar({}, Desktop::Icons::All);
        ASSERT_TRUE(
            waitForWatcher(desktop_.display().environment().at("DBUS_SESSION_BUS_ADDRESS")));
        client_.emplace(greenIcon(desktop_.display()));
        ASSERT_TRUE(eventually([&] { return desktop_.x().barItem("green").has_value(); }));
        AccessibleTree::letProgramsSpeak(desktop_.display());
        desktop_.startOrganiser({"--start-collapsed"});
        ASSERT_TRUE(desktop_.waitUntilCollapsed());
        ASSERT_TRUE(desktop_.hiddenSectionIsOffScreen());
    }
    template <class Condition>
    [[nodiscard]] bool eventually(Condition condition) {
        return waitFor([&] {
            client_->handleEvents();
            return condition();
        });
    }

    Desktop desktop_;
    std::optional<NotifierClient> client_;
};

TEST_F(NotifierOnDesktopTests, HiddenItIsPicturedInTheRowAndAnswersARightClickThere) {
    AccessibleTree tree(desktop_.display());
    SecondRowUnderTest row(desktop_, tree);
    ASSERT_TRUE(row.open());
    ASSERT_THAT(row.icons(), SizeIs(1));
    const WindowFrame place = row.icons().front().frame;
    EXPECT_TRUE(waitFor([&] {
        return (desktop_.x()
                    .capture({.x = place.midX(), .y = place.midY(), .width = 1, .height = 1})
                    .at(0, 0) &
                colorBits) == (green & colorBits);
    }));
    desktop_.input().click(centre(place), UserInput::Button::Right);
    EXPECT_TRUE(eventually([&] { return !client_->calls().empty(); }))
        << desktop_.organiser().process().output();
}

TEST_F(NotifierOnDesktopTests, IsListedWithItsKindAndProcess) {
    const auto list = desktop_.display().start(
        {(builtPrograms() / "pelistra").string(), "--list-items", "--json"});
    ASSERT_TRUE(list->waitForExit());
    std::istringstream lines(list->output());
    std::string found;
    for (std::string line; std::getline(lines, line);) {
        if (line.find("StatusNotifierItem") != std::string::npos) {
            found = line;
        }
    }
    EXPECT_THAT(found, HasSubstr("\"process\":" + std::to_string(::getpid())));
    EXPECT_THAT(found, HasSubstr("\"hidden\":true"));
}

// The menus that a program describes, as the bar shows them without an organiser.
class NotifierMenuTests : public ::testing::Test {
protected:
    using Entry = NotifierClient::Entry;

    void SetUp() override {
        desktop_.startBar({}, Desktop::Icons::All);
        const auto address = desktop_.display().environment().at("DBUS_SESSION_BUS_ADDRESS");
        ASSERT_TRUE(waitForWatcher(address));
    }
    void start(std::vector<Entry> entries, bool late = false) {
        auto options = greenIcon(desktop_.display());
        options.menu = "/menu";
        (late ? options.lateEntries : options.entries) = std::move(entries);
        client_.emplace(options);
        ASSERT_TRUE(eventually([&] { return desktop_.x().barItem("green").has_value(); }));
    }
    [[nodiscard]] RootPoint icon() {
        return centre(desktop_.x().frame(*desktop_.x().barItem("green")).value());
    }
    // The menus that are open, the first one first.
    [[nodiscard]] std::vector<WindowFrame> menus() {
        std::vector<WindowFrame> frames;
        for (const xcb_window_t window : desktop_.x().shownTopLevels()) {
            if (desktop_.x().windowClass(window).first == "pelistra-menubar-menu") {
                frames.push_back(desktop_.x().frame(window).value_or(WindowFrame{}));
            }
        }
        return frames;
    }
    [[nodiscard]] bool has(const std::string& call) {
        const auto& calls = client_->calls();
        return std::ranges::find(calls, call) != calls.end();
    }
    template <class Condition>
    [[nodiscard]] bool eventually(Condition condition) {
        return waitFor([&] {
            client_->handleEvents();
            return condition();
        });
    }
    [[nodiscard]] bool opens() {
        desktop_.input().click(icon(), UserInput::Button::Right);
        return eventually([&] { return menus().size() == 1; });
    }
    [[nodiscard]] bool closes() {
        return eventually([&] { return menus().empty(); });
    }
    void keepPicture(const char* name) {
        if (const char* const folder = std::getenv("PELISTRA_TEST_PICTURES")) {
            desktop_.x().captureRoot().savePng(std::string(folder) + "/" + name + ".png");
        }
    }

    Desktop desktop_;
    std::optional<NotifierClient> client_;
};

const std::vector<NotifierClient::Entry> usualMenu{
    {.id = 1, .label = "_Open"},
    {.id = 2, .label = "Check__ed", .toggle = "checkmark", .on = true},
    {.id = 3, .label = "Radio", .toggle = "radio", .on = true},
    {.id = 4, .label = "Disabled", .enabled = false},
    {.id = 5, .label = "Invisible", .visible = false},
    {.id = 6},
    {.id = 7, .label = "More"},
    {.id = 8, .label = "Below", .depth = 1},
    {.id = 9, .label = "_Quit", .shortcut = {"Control", "Q"}},
};

TEST_F(NotifierMenuTests, OpensUnderTheIconAndTellsWhatIsChosen) {
    start(usualMenu);
    ASSERT_TRUE(opens());
    keepPicture("menu");
    const WindowFrame menu = menus().front();
    EXPECT_EQ(menu.y, desktop_.x().frame(desktop_.x().barWindow())->height);
    EXPECT_LE(menu.x, icon().x);
    EXPECT_GE(menu.right(), icon().x);
    EXPECT_EQ(client_->calls().front(), "AboutToShow 0");
    constexpr int intoTheFirstEntry = 14;
    desktop_.input().click({.x = menu.x + intoTheFirstEntry, .y = menu.y + intoTheFirstEntry});
    EXPECT_TRUE(eventually([&] { return has("clicked 1"); }));
    EXPECT_TRUE(closes());
}

TEST_F(NotifierMenuTests, ClosesOnEscapeAndOnAClickElsewhere) {
    start(usualMenu);
    ASSERT_TRUE(opens());
    desktop_.input().tapKey(keys::escape);
    EXPECT_TRUE(closes());
    ASSERT_TRUE(opens());
    desktop_.input().click({.x = 300, .y = 500});
    EXPECT_TRUE(closes());
    EXPECT_TRUE(eventually([&] { return has("closed 0"); }));
    EXPECT_FALSE(has("clicked 1"));
}

TEST_F(NotifierMenuTests, IsWorkedByTheKeyboard) {
    constexpr std::uint32_t up = 0xff52;
    constexpr std::uint32_t right = 0xff53;
    start(usualMenu);
    ASSERT_TRUE(opens());
    // Up from nothing is the last entry; the one above it has a menu.
    desktop_.input().tapKey(up);
    desktop_.input().tapKey(up);
    desktop_.input().tapKey(right);
    ASSERT_TRUE(eventually([&] { return menus().size() == 2; }));
    keepPicture("submenu");
    desktop_.input().tapKey(keys::enter);
    EXPECT_TRUE(eventually([&] { return has("clicked 8"); }));
    EXPECT_TRUE(closes());
}

TEST_F(NotifierMenuTests, TakesWhatIsThereOnceItIsAboutToBeShown) {
    start(usualMenu, true);
    EXPECT_TRUE(opens());
}

TEST_F(NotifierMenuTests, FollowsChangesWhileItIsOpen) {
    start({{.id = 1, .label = "One"}});
    ASSERT_TRUE(opens());
    const int before = menus().front().height;
    client_->changeMenu({{.id = 1, .label = "One"}, {.id = 2, .label = "Two"}});
    EXPECT_TRUE(eventually([&] { return menus().size() == 1 && menus().front().height > before; }));
}

TEST_F(NotifierMenuTests, AnEmptyMenuIsTheProgramsOwnBusiness) {
    start({});
    desktop_.input().click(icon(), UserInput::Button::Right);
    EXPECT_TRUE(eventually([&] {
        return std::ranges::any_of(client_->calls(), [](const std::string& call) {
            return call.starts_with("ContextMenu ");
        });
    }));
    EXPECT_TRUE(menus().empty());
}

} // namespace
} // namespace pelistra::testing
