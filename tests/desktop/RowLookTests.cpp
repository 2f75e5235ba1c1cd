// How the second row looks beside the bar, and what is found without help from the X server.

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/SecondRowUnderTest.h"

#include <algorithm>
#include <utility>

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
    desktop.startProgram("nabi");
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

class RowUnderChangingCompositorTests : public ::testing::TestWithParam<Compositor> {
protected:
    // The row with what lies around it, once it looks like `expected`; as it looks at last, if that
    // never comes.
    [[nodiscard]] Picture lookLike(const Picture& expected) {
        Picture seen;
        static_cast<void>(waitFor([&] {
            seen = desktop_.x().capture(around_);
            return seen.differingPixels(expected) == 0;
        }));
        return seen;
    }
    [[nodiscard]] Picture freshLook() {
        SecondRowUnderTest::letTheArrowRest();
        EXPECT_TRUE(desktop_.clickControl());
        EXPECT_TRUE(waitFor([this] { return !row_.isOpen(); }));
        EXPECT_TRUE(row_.open());
        // Hover and the like have come to rest when it looks the same twice.
        Picture last;
        EXPECT_TRUE(waitFor([&] {
            const Picture before = std::exchange(last, desktop_.x().capture(around_));
            return staysTrue([&] { return desktop_.x().capture(around_) == last; },
                             std::chrono::milliseconds(300)) &&
                   before.colours() > 0;
        }));
        return last;
    }

    Desktop desktop_;
    bool speaks_ = (AccessibleTree::letProgramsSpeak(desktop_.display()), true);
    AccessibleTree tree_{desktop_.display()};
    SecondRowUnderTest row_{desktop_, tree_};
    WindowFrame around_{.x = 640, .y = 0, .width = 640, .height = 200};
};

TEST_P(RowUnderChangingCompositorTests, AnOpenRowLooksAsIfItHadJustBeenOpened) {
    desktop_.startBar();
    desktop_.startProgram("nabi");
    desktop_.startProgram("qmidinet");
    desktop_.startOrganiser({"--start-collapsed"});
    ASSERT_TRUE(desktop_.waitUntilCollapsed());
    ASSERT_TRUE(row_.open());
    const Picture plain = freshLook();
    desktop_.display().changeCompositor(GetParam());
    const Picture composited = freshLook();
    EXPECT_GT(composited.differingPixels(plain), 0U);
    desktop_.display().changeCompositor(Compositor::None);
    EXPECT_EQ(lookLike(plain).differingPixels(plain), 0U);
    EXPECT_TRUE(row_.isOpen());
    desktop_.display().changeCompositor(GetParam());
    EXPECT_EQ(lookLike(composited).differingPixels(composited), 0U);
    EXPECT_TRUE(row_.isOpen());
}

INSTANTIATE_TEST_SUITE_P(Changing, RowUnderChangingCompositorTests,
                         ::testing::Values(Compositor::Picom, Compositor::Xcompmgr,
                                           Compositor::Xfwm4),
                         compositorTestName);

TEST(ServerWithoutResourceExtensionTests, TheOrganiserFindsItsItemsAndHidesTheOthers) {
    Desktop::Size size;
    size.withoutExtensions = {"X-Resource"};
    Desktop desktop(size);
    desktop.startBar();
    desktop.startProgram("nabi");
    OrganiserUnderTest& organiser = desktop.startOrganiser({"--start-collapsed"});
    EXPECT_TRUE(desktop.waitUntilCollapsed()) << organiser.process().output();
    EXPECT_THAT(organiser.process().output(), Not(HasSubstr("not ready")));
    EXPECT_TRUE(desktop.hiddenSectionIsOffScreen());
}

} // namespace
} // namespace pelistra::testing
