#pragma once

#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/NotifierClient.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace pelistra::testing {

inline constexpr std::uint32_t green = 0xFF00A000;
inline constexpr std::uint32_t colorBits = 0xFFFFFF;
inline constexpr int iconSide = 22;

inline NotifierClient::Options greenIcon(PrivateDisplay& display) {
    NotifierClient::Options options;
    options.address = display.environment().at("DBUS_SESSION_BUS_ADDRESS");
    options.id = "green";
    options.pixmaps = {NotifierClient::plainPixmap(iconSide, green)};
    return options;
}

// The menus that a program describes, as the bar shows them without an organiser.
class NotifierMenuFixture : public ::testing::Test {
protected:
    using Entry = NotifierClient::Entry;

    void SetUp() override {
        desktop_.startBar({}, Desktop::Icons::All);
        const auto address = desktop_.display().environment().at("DBUS_SESSION_BUS_ADDRESS");
        ASSERT_TRUE(waitForWatcher(address));
    }
    [[nodiscard]] NotifierClient::Options withMenu(std::vector<Entry> entries) {
        auto options = greenIcon(desktop_.display());
        options.menu = "/menu";
        options.entries = std::move(entries);
        return options;
    }
    void start(std::vector<Entry> entries) { startWith(withMenu(std::move(entries))); }
    void startWith(const NotifierClient::Options& options) {
        client_.emplace(options);
        ASSERT_TRUE(isThere());
    }
    [[nodiscard]] bool isThere() {
        return eventually([&] {
            const auto item = desktop_.x().barItem("green");
            return item && desktop_.x().isViewable(*item);
        });
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
    // A key that comes before the menu has the keyboard goes elsewhere, as a user's would.
    [[nodiscard]] bool closesOnEscape() {
        constexpr std::chrono::milliseconds untilAnotherTry{1'000};
        return waitFor([&] {
            desktop_.input().tapKey(keys::escape);
            return waitFor(
                [&] {
                    client_->handleEvents();
                    return menus().empty();
                },
                untilAnotherTry);
        });
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

inline const std::vector<NotifierClient::Entry> usualMenu{
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

} // namespace pelistra::testing
