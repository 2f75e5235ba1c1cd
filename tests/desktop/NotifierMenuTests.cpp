// Menus of icons on the session bus, as the bar has them shown.

#include "tests/desktop/NotifierMenuFixture.h"

namespace pelistra::testing {
namespace {

using NotifierMenuTests = NotifierMenuFixture;

constexpr std::uint32_t up = 0xff52;
constexpr std::uint32_t right = 0xff53;
constexpr std::uint32_t down = 0xff54;

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
    auto options = withMenu({});
    options.lateEntries = usualMenu;
    startWith(options);
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

TEST_F(NotifierMenuTests, ShowsEveryKindOfEntryInEveryLook) {
    std::vector<Entry> entries = usualMenu;
    entries.front().iconName = "document-open";
    entries.back().iconName = "application-exit-symbolic";
    std::vector<int> heights;
    for (const auto& [theme, scale] : {std::pair("light", 1), {"dark", 1}, {"dark", 2}}) {
        SCOPED_TRACE(std::string(theme) + " " + std::to_string(scale));
        desktop_.startBar({std::string("--theme=") + theme, "--scale=" + std::to_string(scale)},
                          Desktop::Icons::All);
        ASSERT_TRUE(
            waitForWatcher(desktop_.display().environment().at("DBUS_SESSION_BUS_ADDRESS")));
        start(entries);
        ASSERT_TRUE(opens());
        const WindowFrame menu = menus().front();
        heights.push_back(menu.height);
        Picture picture;
        EXPECT_TRUE(eventually([&] {
            picture = desktop_.x().capture(menu);
            // The icons come a moment later.
            const int side = 28 * scale;
            return picture.colours() > 20 && picture.part(0, 0, side, side).colours() > 5 &&
                   picture.part(0, menu.height - side, side, side).colours() > 5;
        }));
        const bool light = (picture.at(menu.width / 2, 2) & 0xFFU) > 0x80U;
        EXPECT_EQ(light, theme == std::string("light"));
        keepPicture((std::string("menu-") + theme + std::to_string(scale)).c_str());
        ASSERT_TRUE(closesOnEscape());
        client_.reset();
    }
    EXPECT_EQ(heights[0], heights[1]);
    EXPECT_NEAR(heights[2], 2 * heights[1], 8);
}

TEST_F(NotifierMenuTests, MenusBelowMenusOpenToAnyDepthThatIsShown) {
    std::vector<Entry> entries;
    constexpr int deepest = 5;
    for (int depth = 0; depth <= deepest; ++depth) {
        entries.push_back(
            {.id = depth + 1, .label = "Level " + std::to_string(depth), .depth = depth});
    }
    start(entries);
    ASSERT_TRUE(opens());
    desktop_.input().tapKey(down);
    for (std::size_t shown = 2; shown <= deepest + 1; ++shown) {
        desktop_.input().tapKey(right);
        ASSERT_TRUE(eventually([&] { return menus().size() == shown; }));
    }
    keepPicture("menu-deep");
    desktop_.input().tapKey(keys::enter);
    EXPECT_TRUE(eventually([&] { return has("clicked 6"); }));
    EXPECT_TRUE(closes());
}

TEST_F(NotifierMenuTests, WhatIsDisabledCannotBeChosenAndWhatIsInvisibleIsNotThere) {
    start({{.id = 1, .label = "Invisible", .visible = false},
           {.id = 2, .label = "Disabled", .enabled = false},
           {.id = 3, .label = "Enabled"}});
    ASSERT_TRUE(opens());
    const WindowFrame menu = menus().front();
    const int quarter = menu.height / 4;
    desktop_.input().click({.x = menu.midX(), .y = menu.y + quarter});
    desktop_.input().click({.x = menu.midX(), .y = menu.y + 3 * quarter});
    EXPECT_TRUE(eventually([&] { return has("clicked 3"); }));
    EXPECT_FALSE(has("clicked 2") || has("clicked 1"));
}

TEST_F(NotifierMenuTests, AProgramThatHangsIsNamedAsSuchAndTheMenuCloses) {
    start(usualMenu);
    client_->change([](auto& options) { options.answers = NotifierClient::Answers::Never; },
                    "NewToolTip");
    ASSERT_TRUE(opens());
    keepPicture("menu-silent");
    EXPECT_TRUE(closesOnEscape());
}

TEST_F(NotifierMenuTests, AMenuOfManyAndEndlessEntriesStaysOnTheScreen) {
    auto options = withMenu({});
    options.root = [](sd_bus_message& reply) {
        sd_bus_message_open_container(&reply, 'r', "ia{sv}av");
        sd_bus_message_append(&reply, "ia{sv}", 0, 0);
        sd_bus_message_open_container(&reply, 'a', "v");
        const std::string text = "\xE2\x80\xAE\x01\x1b[2J" + std::string(1'000'000, 'x');
        for (int id = 1; id <= 20'000; ++id) {
            sd_bus_message_append(&reply, "v", "(ia{sv}av)", id, 1, "label", "s",
                                  id <= 3 ? text.c_str() : "entry", 0);
        }
        sd_bus_message_close_container(&reply);
        sd_bus_message_close_container(&reply);
    };
    startWith(options);
    ASSERT_TRUE(opens());
    const WindowFrame menu = menus().front();
    const WindowFrame screen = desktop_.x().rootFrame();
    EXPECT_GE(menu.x, 0);
    EXPECT_LE(menu.width, screen.width / 2);
    EXPECT_LE(menu.right(), screen.width);
    EXPECT_LE(menu.y + menu.height, screen.height);
    EXPECT_TRUE(eventually([&] { return desktop_.x().capture(menu).colours() > 5; }));
    keepPicture("menu-endless");
    EXPECT_TRUE(closesOnEscape());
}

TEST_F(NotifierMenuTests, ALongMenuThatComesLateTakesThePlaceOfTheWordsThatThereIsNone) {
    std::vector<Entry> entries;
    for (int id = 1; id <= 1'000; ++id) {
        entries.push_back({.id = id, .label = "Entry " + std::to_string(id)});
    }
    start(entries);
    desktop_.input().click(icon(), UserInput::Button::Right);
    // The program hears of nothing meanwhile.
    ASSERT_TRUE(waitFor([&] { return menus().size() == 1; }));
    const int before = menus().front().height;
    ASSERT_TRUE(eventually([&] {
        const auto shown = menus();
        return shown.size() == 1 && shown.front().height > 10 * before;
    }));
    EXPECT_TRUE(closesOnEscape());
}

TEST_F(NotifierMenuTests, AMenuThatChangesWithoutEndIsReadTenTimesASecond) {
    auto options = withMenu({});
    int questions = 0;
    options.root = [&questions](sd_bus_message& reply) {
        ++questions;
        sd_bus_message_append(&reply, "(ia{sv}av)", 0, 0, 1, "(ia{sv}av)", questions, 1, "label",
                              "s", std::to_string(questions).c_str(), 0);
    };
    startWith(options);
    ASSERT_TRUE(opens());
    const int before = questions;
    const auto begin = std::chrono::steady_clock::now();
    constexpr std::chrono::milliseconds time{1'000};
    constexpr std::chrono::milliseconds interval{100};
    while (std::chrono::steady_clock::now() - begin < time) {
        client_->changeMenu({});
    }
    const auto passed = std::chrono::steady_clock::now() - begin;
    EXPECT_GT(questions, before);
    EXPECT_LE(questions - before, 2 + passed / interval);
    EXPECT_EQ(menus().size(), 1U);
}

} // namespace
} // namespace pelistra::testing
