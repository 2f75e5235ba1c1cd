#include "platform/linux/commandline/ListItems.h"
#include "platform/linux/commandline/ListItemsText.h"

#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/WaitFor.h"
#include "tests/linux/icons/TestTray.h"

#include <chrono>
#include <csignal>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <unistd.h>
#include <xcb/xproto.h>

namespace pelistra::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

// An item of this process as JSON.
std::string object(xcb_window_t window, const std::string& name, const std::string& x,
                   const std::string& isHidden, const std::string& displayName,
                   const std::string& symbol) {
    return "  {\"id\":" + std::to_string(window) + ",\"process\":" + std::to_string(::getpid()) +
           ",\"kind\":\"XEmbed\",\"owner\":\"linux_tests\",\"windowName\":\"" + name +
           "\",\"desktopId\":null,\"frame\":{\"x\":" + x +
           ",\"y\":0.0,\"width\":24.0,\"height\":28.0},\"hidden\":" + isHidden +
           ",\"displayName\":\"" + displayName + "\",\"fallbackSymbol\":\"" + symbol + "\"}";
}

TEST(ListItemsTable, EveryScriptTakesItsColumns) {
    std::vector<linux::ListedItem> items;
    // Two columns each, one each, and one with an accent that takes none.
    for (const char* owner : {"声音", "abcd", "abce\u0301"}) {
        linux::ListedItem& item = items.emplace_back();
        item.owner = owner;
        item.windowName = "x";
    }
    std::ostringstream out;
    linux::writeTable(out, items);
    EXPECT_THAT(out.str(), AllOf(HasSubstr("  声音   x"), HasSubstr("  abcd   x"),
                                 HasSubstr("  abce\u0301   x")));
}

class ListItemsTest : public ::testing::Test {
protected:
    int list(bool json) {
        out.str("");
        err.str("");
        return linux::listItems(out, err, json, display.name());
    }
    // It says why there is no list, and takes no longer than promised.
    void expectNoAnswer() {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_EQ(list(false), 1);
        EXPECT_LT(std::chrono::steady_clock::now() - begin,
                  linux::longestListing + std::chrono::seconds(5));
        EXPECT_THAT(out.str(), IsEmpty());
        EXPECT_EQ(err.str(), "pelistra: the X server does not answer\n");
    }

    PrivateDisplay display;
    std::ostringstream out;
    std::ostringstream err;
};

TEST_F(ListItemsTest, SaysWhenThereIsNoTrayOrNoDisplay) {
    EXPECT_EQ(list(false), 1);
    EXPECT_THAT(out.str(), IsEmpty());
    EXPECT_EQ(err.str(), "pelistra: there is no system tray on this display\n");
    EXPECT_EQ(linux::listItems(out, err, false, ":9999"), 1);
    EXPECT_THAT(err.str(), HasSubstr(":9999"));
}

TEST_F(ListItemsTest, ListsEveryItemOfAnyTray) {
    for (const auto kind : {TestTray::Kind::Ours, TestTray::Kind::Foreign}) {
        TestTray tray(display.name(), kind);
        IconClient client(display.name());
        const auto hidden = client.makeWindow(24, 28);
        const auto shown = client.makeWindow(24, 28);
        client.setText(hidden, "_NET_WM_NAME", "UTF8_STRING", "WiFi \"quoted\" \\ 网络");
        client.setText(shown, "_NET_WM_NAME", "UTF8_STRING", "Clock");
        tray.embed(hidden, -300, 24, 28);
        tray.embed(shown, 200, 24, 28);

        EXPECT_EQ(list(true), 0);
        EXPECT_EQ(out.str(), "[\n" +
                                 object(hidden, R"(WiFi \"quoted\" \\ 网络)", "-300.0", "true",
                                        "linux_tests", "wifi") +
                                 ",\n" + object(shown, "Clock", "200.0", "false", "时钟", "clock") +
                                 "\n]\n");

        EXPECT_EQ(list(false), 0);
        EXPECT_THAT(out.str(), HasSubstr("WINDOW"));
        EXPECT_THAT(out.str(), HasSubstr("-300,0 24x28"));
        EXPECT_THAT(out.str(), HasSubstr("shown"));
    }
}

TEST_F(ListItemsTest, DoesNotWaitForAStoppedServer) {
    const TestTray tray(display.name(), TestTray::Kind::Ours);
    ::kill(display.serverPid(), SIGSTOP);
    expectNoAnswer();
    ::kill(display.serverPid(), SIGCONT);
    EXPECT_TRUE(waitFor([&] { return list(false) == 0; }));
}

TEST_F(ListItemsTest, DoesNotWaitForAGrabbedServer) {
    const TestTray tray(display.name(), TestTray::Kind::Ours);
    IconClient client(display.name());
    xcb_grab_server(client.x().get());
    client.x().sync();
    expectNoAnswer();
    xcb_ungrab_server(client.x().get());
    client.x().sync();
    EXPECT_TRUE(waitFor([&] { return list(false) == 0; }));
}

} // namespace
} // namespace pelistra::testing
