// How the second row looks beside the bar, and what is found without help from the X server.

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/SecondRowUnderTest.h"

#include <algorithm>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// The brightest channel of the colour in the middle of the row's upper edge, where nothing else is.
int brightness(Desktop& desktop, SecondRowUnderTest& row) {
    constexpr int belowTheEdge = 6;
    const auto frame = row.frame();
    if (!frame) {
        return -1;
    }
    const Picture picture = desktop.x().capture(*frame);
    const std::uint32_t colour = picture.at(picture.width() / 2, belowTheEdge);
    constexpr std::uint32_t channel = 0xff;
    return static_cast<int>(
        std::max({colour & channel, (colour >> 8U) & channel, (colour >> 16U) & channel}));
}

TEST(RowLookTests, TheRowIsAsDarkAsTheBarOnALightDesktop) {
    constexpr int dark = 100;
    constexpr int light = 180;
    Desktop desktop;
    AccessibleTree::letProgramsSpeak(desktop.display());
    AccessibleTree tree(desktop.display());
    SecondRowUnderTest row(desktop, tree);
    desktop.startBar({"--theme", "dark"});
    desktop.startProgram("parcellite");
    desktop.startOrganiser({"--start-collapsed"});
    ASSERT_TRUE(desktop.waitUntilCollapsed());
    ASSERT_TRUE(row.open());
    EXPECT_TRUE(waitFor([&] {
        const int seen = brightness(desktop, row);
        return seen >= 0 && seen < dark;
    })) << brightness(desktop, row);
    // An open row follows the bar that takes the other's place.
    desktop.startBar({"--theme", "light"});
    EXPECT_TRUE(waitFor([&] {
        return (row.isOpen() || row.open()) && brightness(desktop, row) > light;
    })) << brightness(desktop, row);
}

TEST(ServerWithoutResourceExtensionTests, TheOrganiserFindsItsItemsAndHidesTheOthers) {
    Desktop::Size size;
    size.withoutExtensions = {"X-Resource"};
    Desktop desktop(size);
    desktop.startBar();
    desktop.startProgram("parcellite");
    OrganiserUnderTest& organiser = desktop.startOrganiser({"--start-collapsed"});
    EXPECT_TRUE(desktop.waitUntilCollapsed()) << organiser.process().output();
    EXPECT_THAT(organiser.process().output(), Not(HasSubstr("not ready")));
    EXPECT_TRUE(desktop.hiddenSectionIsOffScreen());
}

} // namespace
} // namespace pelistra::testing
