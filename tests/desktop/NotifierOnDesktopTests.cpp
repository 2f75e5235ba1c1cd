// Icons of the session bus under the organiser: hidden, pictured and clicked like any other.

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/NotifierClient.h"
#include "tests/desktop/harness/SecondRowUnderTest.h"

#include <algorithm>
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
        desktop_.startBar();
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

} // namespace
} // namespace pelistra::testing
