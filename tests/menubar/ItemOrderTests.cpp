#include "tests/menubar/BarFixture.h"

#include <csignal>
#include <fstream>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;

using ItemOrderTests = BarFixture;

TEST_F(ItemOrderTests, NewItemsComeInAtTheLeftEnd) {
    startBar();
    dockNamed("a");
    dockNamed("b");
    dockNamed("c");
    EXPECT_THAT(names(), ElementsAre("c", "b", "a"));
}

TEST_F(ItemOrderTests, AProgramThatStartsAgainComesBackToItsPlace) {
    startBar();
    dockNamed("a");
    TrayClient& b = dockNamed("b");
    dockNamed("c");
    endClient(b);
    EXPECT_THAT(names(), ElementsAre("c", "a"));
    dockNamed("d");
    dockNamed("b");
    EXPECT_THAT(names(), ElementsAre("d", "c", "b", "a"));
}

TEST_F(ItemOrderTests, TheOrderOutlivesTheBar) {
    for (const int signal : {SIGKILL, SIGTERM}) {
        startBar();
        TrayClient& a = dockNamed("a");
        TrayClient& b = dockNamed("b");
        TrayClient& c = dockNamed("c");
        EXPECT_THAT(names(), ElementsAre("c", "b", "a"));
        stopBar(signal);
        startBar();
        for (TrayClient* client : {&b, &c, &a}) {
            ASSERT_TRUE(client->requestDock());
        }
        EXPECT_TRUE(comesToBe({"c", "b", "a"}));
        for (TrayClient* client : {&a, &b, &c}) {
            endClient(*client);
        }
    }
}

TEST_F(ItemOrderTests, APreferredPositionDecidesTheFirstPlaceOnly) {
    startBar();
    dockNamed("a");
    dockNamed("b");
    dock({.name = "control", .preferredPosition = 0});
    TrayClient& divider = dock({.name = "divider", .preferredPosition = 1});
    EXPECT_THAT(names(), ElementsAre("b", "a", "divider", "control"));
    endClient(divider);
    dock({.name = "divider", .preferredPosition = 3});
    EXPECT_THAT(names(), ElementsAre("b", "a", "divider", "control"));
}

TEST_F(ItemOrderTests, AHiddenItemDoesNotCountForAPosition) {
    startBar();
    dock({.name = "hidden", .mappedFlag = false});
    dockNamed("a");
    dock({.name = "divider", .preferredPosition = 1});
    EXPECT_THAT(names(), ElementsAre("divider", "a"));
}

TEST_F(ItemOrderTests, TheIconsOfOneProgramKeepTheirRelativeOrder) {
    startBar();
    TrayClient& first = dock({.name = "twin", .colour = 0xff0000});
    dockNamed("between");
    TrayClient& second = dock({.name = "twin", .colour = 0x00ff00});
    EXPECT_LT(frameOf(second).x, frameOf(first).x);
    endClient(first);
    endClient(second);
    // They dock in the same order again.
    const TrayClient& firstAgain = dock({.name = "twin", .colour = 0xff0000});
    const TrayClient& secondAgain = dock({.name = "twin", .colour = 0x00ff00});
    EXPECT_THAT(names(), ElementsAre("twin", "between", "twin"));
    EXPECT_LT(frameOf(secondAgain).x, frameOf(firstAgain).x);
}

TEST_F(ItemOrderTests, TheOrderIsKeptInTheStateFolder) {
    startBar();
    dockNamed("a");
    dockNamed("b");
    const std::filesystem::path file = display_.stateFolder() / "pelistra" / "menubar-order";
    EXPECT_TRUE(waitFor([&] {
        std::ifstream stream(file);
        std::string heading;
        std::string first;
        std::getline(stream, heading);
        std::getline(stream, first);
        return first == "b\tb\t0";
    }));
}

TEST_F(ItemOrderTests, AnUnwritableFolderCostsOneLineAndNothingElse) {
    allowComplaints(1);
    std::ofstream(display_.stateFolder() / "pelistra") << "a file where a folder should be";
    startBar();
    dockNamed("a");
    dockNamed("b");
    EXPECT_THAT(names(), ElementsAre("b", "a"));
    EXPECT_TRUE(bar().process().waitForOutput("cannot keep the order"));
}

} // namespace
} // namespace pelistra::testing
