// The second row on a whole desktop: real programs behind its icons, several monitors, full-screen
// windows.

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/SecondRowUnderTest.h"

#include <csignal>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

using Button = UserInput::Button;

const std::vector<std::string> programs{"nabi", "xfce4-clipman", "qmidinet"};
constexpr RootPoint elsewhere{.x = 300, .y = 600};
constexpr int belowArrow = 6;

constexpr const char* manyIcons = R"(
package require tktray
wm withdraw .
image create photo face -width 22 -height 22
face put #c02020 -to 2 2 20 20
for {set i 0} {$i < 20} {incr i} {
    tktray::icon .tray$i -image face -class [format "Many%02d" $i]
}
)";

class RowOnDesktopTests : public ::testing::Test {
protected:
    explicit RowOnDesktopTests(const Desktop::Size& size = {}) : desktop_(size) {}

    void SetUp() override {
        desktop_.startBar();
        for (const std::string& program : programs) {
            desktop_.startProgram(program);
        }
        AccessibleTree::letProgramsSpeak(desktop_.display());
        desktop_.startOrganiser({"--start-collapsed"});
        ASSERT_TRUE(desktop_.waitUntilCollapsed()) << log();
    }

    [[nodiscard]] std::string log() { return desktop_.organiser().process().output(); }
    // Nothing is revealed and nothing half done: the arrow's next click opens the row again.
    void expectWholeAndCollapsed() {
        EXPECT_TRUE(desktop_.waitUntilCollapsed()) << ::testing::PrintToString(desktop_.items());
        EXPECT_EQ(desktop_.organiser().dividerFrame()->width, 2 * desktop_.x().rootFrame().width);
        desktop_.input().click(elsewhere);
        ASSERT_TRUE(waitFor([&] { return !row_.isOpen(); }));
        EXPECT_TRUE(row_.open()) << log();
    }
    [[nodiscard]] bool isOnScreen(const std::string& className) {
        const auto item = desktop_.item(className);
        return item && item->frame.x >= 0 && item->frame.right() <= desktop_.x().rootFrame().width;
    }
    void rightClick(const std::string& name) {
        const auto icon = row_.icon(name);
        ASSERT_TRUE(icon) << name;
        desktop_.input().click(centre(icon->frame), Button::Right);
    }

    Desktop desktop_;
    AccessibleTree tree_{desktop_.display()};
    SecondRowUnderTest row_{desktop_, tree_};
};

TEST_F(RowOnDesktopTests, TheWheelReachesTheLastOfManyIcons) {
    const std::filesystem::path script = desktop_.display().folder() / "many.tcl";
    std::ofstream(script) << manyIcons;
    const auto program = desktop_.display().start({"wish", script.string()});
    ASSERT_TRUE(waitFor([&] { return desktop_.hiddenSection().size() == programs.size() + 20; }))
        << program->output();
    ASSERT_TRUE(desktop_.waitUntilCollapsed());
    ASSERT_TRUE(row_.open());
    const WindowFrame frame = *row_.frame();
    EXPECT_EQ(frame.width, 920);
    ASSERT_GT(row_.icons().back().frame.right(), frame.right());
    desktop_.input().turnWheel(centre(frame), UserInput::Wheel::Down, 40);
    const auto showsTheLast = [&] { return row_.icons().back().frame.right() < frame.right(); };
    EXPECT_TRUE(waitFor(showsTheLast));
    // A refresh of the list comes every two seconds.
    EXPECT_TRUE(staysTrue(showsTheLast, std::chrono::milliseconds(2'200)));
    EXPECT_LT(row_.icons().front().frame.x, frame.x);
    desktop_.input().turnWheel(centre(frame), UserInput::Wheel::Up, 40);
    EXPECT_TRUE(waitFor([&] { return row_.icons().front().frame.x > frame.x; }));
}

TEST_F(RowOnDesktopTests, OpensOnTheArrowsMonitorAndFollowsWhenMonitorsChange) {
    desktop_.setMonitors({800, 480});
    ASSERT_TRUE(waitFor([&] { return desktop_.organiser().controlFrame()->right() <= 800; }));
    ASSERT_TRUE(desktop_.waitUntilCollapsed());
    ASSERT_TRUE(row_.open());
    EXPECT_EQ(row_.frame()->right(), 800 - 8);
    EXPECT_EQ(row_.frame()->y, desktop_.organiser().controlFrame()->y +
                                   desktop_.organiser().controlFrame()->height + belowArrow);
    // The second monitor goes while the row is open.
    desktop_.clearMonitors(2);
    EXPECT_TRUE(waitFor([&] {
        const auto frame = row_.frame();
        return frame && frame->right() == desktop_.x().rootFrame().right() - 8;
    })) << ::testing::PrintToString(row_.frame().value_or(WindowFrame{}));
    EXPECT_TRUE(desktop_.waitUntilCollapsed());
}

TEST_F(RowOnDesktopTests, LiesAboveAFullScreenWindow) {
    XClient& x = desktop_.x();
    const auto viewer = desktop_.display().start({"xev", "-geometry", "300x200+100+100"});
    ASSERT_TRUE(waitFor([&] { return x.managedWindow("Event Tester").has_value(); }));
    const xcb_window_t window = *x.managedWindow("Event Tester");
    ASSERT_TRUE(row_.open());
    x.requestFullScreen(window, true);
    ASSERT_TRUE(waitFor(
        [&] { return x.frame(window) == x.rootFrame() && x.isAbove(window, x.barWindow()); }));
    ASSERT_TRUE(row_.isOpen());
    EXPECT_TRUE(x.isAbove(*row_.window(), window));
    for (const SecondRowUnderTest::Icon& icon : row_.icons()) {
        EXPECT_TRUE(waitFor([&] { return x.capture(icon.frame).colours() > 2; })) << icon.name;
    }
}

using RowUnderCompositorTests = UnderCompositor<RowOnDesktopTests>;
INSTANTIATE_TEST_SUITE_P(Under, RowUnderCompositorTests,
                         ::testing::ValuesIn(withAndWithoutCompositor), compositorTestName);

TEST_P(RowUnderCompositorTests, ARightClickOpensTheIconsMenuAndTheArrowPutsItBack) {
    // One listens to the second pointer only, the other takes what is sent.
    for (const auto& [name, className] :
         {std::pair{"Clipboard Manager", "Xfce4-clipman"}, {"QmidiNet", "QmidiNet"}}) {
        ASSERT_TRUE(row_.isOpen() || row_.open());
        rightClick(name);
        const PointerState pointer = desktop_.x().pointer();
        EXPECT_TRUE(waitFor([&] { return isOnScreen(className); })) << log();
        EXPECT_TRUE(waitFor([&] { return !desktop_.x().shownMenus().empty(); })) << log();
        EXPECT_EQ(desktop_.x().pointer(), pointer);
        EXPECT_FALSE(row_.isOpen());
        // A menu that is just opening may miss the first click.
        EXPECT_TRUE(waitFor([&] {
            desktop_.input().click(elsewhere);
            return waitFor([&] { return desktop_.x().shownMenus().empty(); },
                           std::chrono::milliseconds(1'000));
        }));
        SecondRowUnderTest::letTheArrowRest();
        ASSERT_TRUE(desktop_.clickControl());
        expectWholeAndCollapsed();
    }
}

TEST_P(RowUnderCompositorTests, AnIconAnswersThePointer) {
    ASSERT_TRUE(row_.open());
    const WindowFrame icon = row_.icon("QmidiNet")->frame;
    desktop_.input().moveTo(elsewhere);
    Picture resting;
    // Its picture may still come.
    ASSERT_TRUE(waitFor([&] {
        resting = desktop_.x().capture(icon);
        return resting.colours() > 1 &&
               staysTrue([&] { return desktop_.x().capture(icon) == resting; },
                         std::chrono::milliseconds(300));
    }));
    desktop_.input().moveTo(centre(icon));
    EXPECT_TRUE(waitFor([&] { return desktop_.x().capture(icon).differingPixels(resting) > 200; }));
    desktop_.input().moveTo(elsewhere);
    EXPECT_TRUE(waitFor([&] { return desktop_.x().capture(icon) == resting; }));
}

TEST_F(RowOnDesktopTests, AnArrowClickRightAfterARightClickLeavesNothingHalfRevealed) {
    ASSERT_TRUE(row_.open());
    SecondRowUnderTest::letTheArrowRest();
    rightClick("QmidiNet");
    ASSERT_TRUE(desktop_.clickControl());
    // Row and arrow are on connections of their own, so either click may be handled first.
    EXPECT_TRUE(row_.endAnyReveal(elsewhere)) << log();
    expectWholeAndCollapsed();
}

TEST_F(RowOnDesktopTests, AProgramThatDiesAtTheRightClickLeavesTheSectionCollapsed) {
    ASSERT_TRUE(row_.open());
    const auto icon = row_.icon("QmidiNet");
    ASSERT_TRUE(icon);
    desktop_.program("qmidinet").signal(SIGSTOP);
    desktop_.input().click(centre(icon->frame), Button::Right);
    desktop_.program("qmidinet").signal(SIGKILL);
    ASSERT_TRUE(waitFor([&] { return !desktop_.item("QmidiNet"); }));
    // Either the reveal fails, which opens the row with a message, or it waits for the arrow.
    EXPECT_TRUE(row_.endAnyReveal(elsewhere)) << log();
    expectWholeAndCollapsed();
    EXPECT_THAT(row_.icons(), SizeIs(programs.size() - 1));
}

TEST_F(RowOnDesktopTests, SaysThatNothingIsHiddenWhereNothingIs) {
    desktop_.organiser().process().terminate();
    desktop_.endPrograms();
    ASSERT_TRUE(waitFor([&] { return desktop_.items().empty(); }));
    desktop_.startOrganiser({"--start-collapsed"});
    ASSERT_TRUE(waitFor([&] { return desktop_.organiser().isCollapsed(); })) << log();
    ASSERT_TRUE(row_.open()) << log();
    const pid_t process = desktop_.organiser().process().pid();
    // The first window begins to speak to screen readers a moment after it shows.
    EXPECT_TRUE(waitFor([&] { return tree_.shows(process, "隐藏区为空"); }));
    EXPECT_TRUE(tree_.shows(process, "分隔线左侧暂时没有可放入第二行的图标。"));
    EXPECT_THAT(row_.icons(), IsEmpty());
    EXPECT_EQ(row_.frame()->width, 280);
    // Though it lies over everything without being managed.
    EXPECT_THAT(desktop_.x().shownMenus(), IsEmpty());
}

} // namespace
} // namespace pelistra::testing
