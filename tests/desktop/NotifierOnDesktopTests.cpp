// Icons of the session bus under the organiser: hidden, pictured and clicked like any other.

#include "tests/desktop/NotifierMenuFixture.h"
#include "tests/desktop/harness/AccessibleTree.h"
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

// What a program made with another toolkit or in a sandbox has and has not.
struct Kind {
    const char* name = "";
    NotifierClient::Registration registration = NotifierClient::Registration::UniqueName;
    NotifierClient::Answers answers = NotifierClient::Answers::Always;
    std::vector<std::string> methods;
    std::string path = "/StatusNotifierItem";
    std::string menu = "/menu";
    bool itemIsMenu = false;
    // Where its picture is to be found, which is nowhere outside.
    std::string iconName = {};
    bool emptyMenu = false;
    std::vector<std::string> menuMethods = {"AboutToShow", "Event", "GetLayout"};
};

void PrintTo(const Kind& kind, std::ostream* stream) {
    *stream << kind.name;
}

class NotifierKindTests : public NotifierMenuFixture, public ::testing::WithParamInterface<Kind> {
protected:
    void startKind() {
        const Kind& kind = GetParam();
        auto options = withMenu(kind.emptyMenu ? std::vector<Entry>{} : usualMenu);
        options.registration = kind.registration;
        options.answers = kind.answers;
        options.methods = kind.methods;
        options.path = kind.path;
        options.menu = kind.menu;
        options.itemIsMenu = kind.itemIsMenu;
        options.iconName = kind.iconName;
        options.menuMethods = kind.menuMethods;
        startWith(options);
    }
    [[nodiscard]] bool isGreen() {
        return eventually([&] {
            const RootPoint place = icon();
            return (desktop_.x()
                        .capture({.x = place.x, .y = place.y, .width = 1, .height = 1})
                        .at(0, 0) &
                    colorBits) == (green & colorBits);
        });
    }
    // Its menu, or the word that it is to show its own.
    [[nodiscard]] bool hasMenu() {
        return eventually([&] {
            return GetParam().emptyMenu
                       ? std::ranges::any_of(client_->calls(),
                                             [](const std::string& call) {
                                                 return call.starts_with("ContextMenu ");
                                             })
                       : menus().size() == 1;
        });
    }
};

TEST_P(NotifierKindTests, IsShownAnswersBothButtonsAndSurvivesTheBar) {
    startKind();
    EXPECT_TRUE(isGreen());
    desktop_.input().click(icon(), UserInput::Button::Right);
    ASSERT_TRUE(hasMenu());
    if (!GetParam().emptyMenu) {
        ASSERT_TRUE(closesOnEscape());
    }
    desktop_.input().click(icon());
    const bool opensByActivate =
        std::ranges::find(GetParam().methods, "Activate") != GetParam().methods.end() &&
        !GetParam().itemIsMenu;
    EXPECT_TRUE(eventually([&] {
        return opensByActivate ? std::ranges::any_of(client_->calls(),
                                                     [](const std::string& call) {
                                                         return call.starts_with("Activate ");
                                                     })
                               : menus().size() == 1;
    }));
    desktop_.bar().process().kill();
    desktop_.startBar({}, Desktop::Icons::All);
    ASSERT_TRUE(isThere());
    EXPECT_TRUE(isGreen());
    desktop_.input().click(icon(), UserInput::Button::Right);
    EXPECT_TRUE(hasMenu());
}

using Registration = NotifierClient::Registration;
using Answers = NotifierClient::Answers;

INSTANTIATE_TEST_SUITE_P(
    Programs, NotifierKindTests,
    ::testing::Values(
        // A well-known name that alone is answered, a menu, and nothing that opens another.
        Kind{.name = "Electron",
             .registration = Registration::WellKnownName,
             .answers = Answers::ToWellKnownName,
             .methods = {"Activate", "SecondaryActivate", "Scroll"},
             .menu = "/com/canonical/dbusmenu"},
        // A menu that is always empty, and one of its own.
        Kind{.name = "Wine",
             .methods = {"Activate", "SecondaryActivate", "ContextMenu", "Scroll"},
             .menu = "/MenuBar",
             .emptyMenu = true},
        // Nothing but a menu, and that with the least that can be said of it.
        Kind{.name = "Go",
             .registration = Registration::WellKnownName,
             .methods = {},
             .menu = "/StatusNotifierMenu",
             .itemIsMenu = true,
             .menuMethods = {"GetLayout"}},
        // May own no name; its files are elsewhere for everybody else.
        Kind{.name = "Sandboxed",
             .registration = Registration::Path,
             .methods = {"Activate"},
             .path = "/org/ayatana/NotificationItem/sandboxed",
             .menu = "/org/ayatana/NotificationItem/sandboxed/Menu",
             .iconName = "/app/share/icons/of-the-sandbox.png"}),
    [](const auto& parameter) { return parameter.param.name; });

// The same menu, whether its icon is hidden or not.
class NotifierRowMenuTests : public NotifierMenuFixture {};

TEST_F(NotifierRowMenuTests, ARightClickInTheRowOpensTheMenuThatTheBarOpens) {
    AccessibleTree::letProgramsSpeak(desktop_.display());
    start(usualMenu);
    ASSERT_TRUE(opens());
    const WindowFrame shown = menus().front();
    ASSERT_TRUE(closesOnEscape());
    desktop_.startOrganiser({"--start-collapsed"});
    ASSERT_TRUE(desktop_.waitUntilCollapsed());
    ASSERT_TRUE(desktop_.hiddenSectionIsOffScreen());
    AccessibleTree tree(desktop_.display());
    SecondRowUnderTest row(desktop_, tree);
    ASSERT_TRUE(row.open());
    ASSERT_THAT(row.icons(), SizeIs(1));
    desktop_.input().click(centre(row.icons().front().frame), UserInput::Button::Right);
    ASSERT_TRUE(eventually([&] { return menus().size() == 1; }))
        << desktop_.organiser().process().output();
    keepPicture("menu-from-row");
    const WindowFrame menu = menus().front();
    EXPECT_EQ(menu.width, shown.width);
    EXPECT_EQ(menu.height, shown.height);
    constexpr int intoTheFirstEntry = 14;
    desktop_.input().click({.x = menu.x + intoTheFirstEntry, .y = menu.y + intoTheFirstEntry});
    EXPECT_TRUE(eventually([&] { return has("clicked 1"); }));
    EXPECT_TRUE(closes());
}

} // namespace
} // namespace pelistra::testing
