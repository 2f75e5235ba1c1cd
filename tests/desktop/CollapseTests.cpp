#include "tests/desktop/harness/Desktop.h"

#include <algorithm>
#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

using Button = UserInput::Button;

// Longer than the latch that ignores clicks after a toggle.
constexpr std::chrono::milliseconds latchTime{250};
constexpr int barWidth = 1280;

const std::vector<std::string> oneOfEachToolkit{"nabi", "pnmixer", "copyq", "qmidinet"};

class CollapseTests : public ::testing::Test {
protected:
    explicit CollapseTests(const Desktop::Size& size = {}) : desktop_(size) {}

    void SetUp() override {
        desktop_.startBar();
        for (const std::string& program : oneOfEachToolkit) {
            desktop_.startProgram(program);
        }
        desktop_.startOrganiser();
        // A first start puts the two items at the right end.
        ASSERT_TRUE(waitFor([this] {
            return desktop_.hiddenSection().size() == oneOfEachToolkit.size() &&
                   desktop_.everythingIsOnScreen();
        })) << ::testing::PrintToString(desktop_.items());
    }

    void collapse() {
        ASSERT_TRUE(desktop_.clickControl());
        ASSERT_TRUE(desktop_.waitUntilCollapsed()) << ::testing::PrintToString(desktop_.items())
                                                   << desktop_.organiser().process().output();
    }

    [[nodiscard]] std::string log() { return desktop_.organiser().process().output(); }

    // Ends the latch of a toggle that has just happened.
    void outlastLatch() {
        static_cast<void>(staysTrue([] { return true; }, latchTime + latchTime));
    }

    Desktop desktop_;
};

TEST_F(CollapseTests, TheDividerStandsLeftOfTheArrowAtTheRightEnd) {
    const auto control = desktop_.organiser().controlFrame();
    const auto divider = desktop_.organiser().dividerFrame();
    ASSERT_TRUE(control && divider);
    EXPECT_EQ(divider->right(), control->x);
    EXPECT_EQ(divider->width, 14);
    EXPECT_EQ(control->width, control->height);
    EXPECT_GT(control->right(), barWidth - 28);
}

TEST_F(CollapseTests, AClickHidesWhatIsLeftOfTheDividerAndLeavesTheRest) {
    ASSERT_TRUE(desktop_.dragIntoVisibleSection("copyq"));
    const auto control = desktop_.organiser().controlFrame();
    const auto shown = desktop_.visibleSection();
    ASSERT_EQ(shown.size(), 1U);
    collapse();
    EXPECT_EQ(desktop_.hiddenSection().size(), oneOfEachToolkit.size() - 1);
    EXPECT_EQ(desktop_.visibleSection(), shown);
    EXPECT_EQ(desktop_.organiser().controlFrame(), control);
    EXPECT_EQ(desktop_.organiser().dividerFrame()->width, 2 * barWidth);
    EXPECT_THAT(log(), HasSubstr("Collapsed divider to length 2560"));
}

TEST_F(CollapseTests, AnAltClickBringsEverythingBackWhereItWas) {
    const auto before = desktop_.items();
    collapse();
    ASSERT_TRUE(desktop_.clickControl(Button::Left, {keys::alt}));
    EXPECT_TRUE(desktop_.waitUntilExpanded());
    EXPECT_EQ(desktop_.items(), before);
}

using CollapsePictureTests = UnderCompositor<CollapseTests>;
INSTANTIATE_TEST_SUITE_P(Under, CollapsePictureTests, ::testing::ValuesIn(withAndWithoutCompositor),
                         compositorTestName);

TEST_P(CollapsePictureTests, IconsAreRepaintedAfterTheyCameBack) {
    ASSERT_TRUE(waitFor([this] {
        return std::ranges::all_of(desktop_.items(), [this](const Desktop::Item& item) {
            return desktop_.x().capture(item.frame).colours() >= 2;
        });
    }));
    desktop_.input().moveTo({.x = 300, .y = 400});
    const WindowFrame bar{.width = barWidth, .height = 28};
    Picture before = desktop_.x().capture(bar);
    // Icons may still be changing right after their start.
    ASSERT_TRUE(waitFor([&] {
        const Picture earlier = before;
        before = desktop_.x().capture(bar);
        return before == earlier;
    }));
    collapse();
    ASSERT_TRUE(desktop_.clickControl(Button::Left, {keys::alt}));
    ASSERT_TRUE(desktop_.waitUntilExpanded());
    desktop_.input().moveTo({.x = 300, .y = 400});
    const auto differing = [&] {
        std::size_t count = 0;
        for (const Desktop::Item& item : desktop_.hiddenSection()) {
            const WindowFrame& frame = item.frame;
            count += desktop_.x().capture(frame).differingPixels(
                before.part(frame.x, frame.y, frame.width, frame.height));
        }
        return count;
    };
    EXPECT_TRUE(waitFor([&] { return differing() == 0; })) << differing() << " pixels differ";
}

TEST_F(CollapseTests, ASecondClickNeverExpands) {
    collapse();
    outlastLatch();
    ASSERT_TRUE(desktop_.clickControl());
    EXPECT_TRUE(staysTrue([this] { return desktop_.organiser().isCollapsed(); },
                          std::chrono::milliseconds(400)));
}

TEST_F(CollapseTests, ClicksRightAfterAToggleAreIgnored) {
    const auto control = desktop_.organiser().controlFrame();
    ASSERT_TRUE(control);
    // On a busy machine the last click may be handled after the latch has ended. Without a latch it
    // would collapse every time.
    const auto expansions = [this] {
        return desktop_.organiser().process().occurrencesOf("Expanded hidden section");
    };
    const auto lastClickIsIgnored = [&] {
        const std::size_t before = expansions();
        // Collapse, expand, and a third click, all at once.
        desktop_.input().click(centre(*control));
        desktop_.input().click(centre(*control), Button::Left, {keys::alt});
        desktop_.input().click(centre(*control));
        static_cast<void>(waitFor([&] { return expansions() > before; }));
        outlastLatch();
        const bool ignored = desktop_.waitUntilExpanded(std::chrono::seconds(2));
        if (!ignored) {
            static_cast<void>(desktop_.clickControl(Button::Left, {keys::alt}));
            static_cast<void>(desktop_.waitUntilExpanded());
            outlastLatch();
        }
        return ignored;
    };
    bool ignored = false;
    for (int tries = 0; tries < 5 && !ignored; ++tries) {
        ignored = lastClickIsIgnored();
    }
    EXPECT_TRUE(ignored) << log();
    EXPECT_THAT(log(), HasSubstr("Collapsed divider"));
    collapse();
}

TEST_F(CollapseTests, NothingEverMovesThePointer) {
    const auto control = desktop_.organiser().controlFrame();
    ASSERT_TRUE(control);
    const RootPoint place = centre(*control);
    const auto pointerIsThere = [&] {
        return desktop_.x().pointer() == PointerState{.x = place.x, .y = place.y};
    };
    collapse();
    EXPECT_TRUE(pointerIsThere());
    outlastLatch();
    ASSERT_TRUE(desktop_.clickControl(Button::Left, {keys::alt}));
    ASSERT_TRUE(desktop_.waitUntilExpanded());
    EXPECT_TRUE(pointerIsThere());
    desktop_.organiser().process().signal(SIGKILL);
    ASSERT_TRUE(desktop_.organiser().process().waitForExit());
    desktop_.startOrganiser({"--verify-section-layout"});
    ASSERT_TRUE(desktop_.organiser().process().waitForOutput("Verification collapsed"));
    EXPECT_THAT(log(), HasSubstr("dividerWidth=2560.0 pointerUnchanged=true"));
    EXPECT_TRUE(pointerIsThere());
    EXPECT_TRUE(desktop_.waitUntilExpanded());
}

TEST_F(CollapseTests, ItRefusesWhileTheDividerIsRightOfTheArrow) {
    const auto control = desktop_.organiser().controlFrame();
    ASSERT_TRUE(control);
    ASSERT_TRUE(desktop_.dragItem(OrganiserUnderTest::dividerName, control->right() - 2));
    ASSERT_TRUE(waitFor([this] {
        return desktop_.organiser().dividerFrame()->x > desktop_.organiser().controlFrame()->x;
    }));
    ASSERT_TRUE(desktop_.clickControl());
    EXPECT_TRUE(desktop_.organiser().process().waitForOutput(
        "Refusing to collapse because divider is not left of control"));
    EXPECT_FALSE(desktop_.organiser().isCollapsed());
    EXPECT_TRUE(desktop_.everythingIsOnScreen());
    // Back in order, it collapses again.
    outlastLatch();
    ASSERT_TRUE(desktop_.dragItem(OrganiserUnderTest::dividerName,
                                  desktop_.organiser().controlFrame()->x + 2));
    ASSERT_TRUE(waitFor([this] {
        return desktop_.organiser().dividerFrame()->x < desktop_.organiser().controlFrame()->x;
    }));
    collapse();
}

TEST_F(CollapseTests, ADraggedItemStaysOnItsSideAfterARestartOfEverything) {
    ASSERT_TRUE(desktop_.dragIntoVisibleSection("Nabi"));
    ASSERT_TRUE(desktop_.dragItem("copyq", desktop_.items().front().frame.x + 2));
    ASSERT_TRUE(waitFor([this] { return desktop_.order().front() == "copyq"; }));
    const std::vector<std::string> order = desktop_.order();
    desktop_.organiser().process().terminate();
    desktop_.endPrograms();
    EXPECT_EQ(desktop_.bar().process().terminate(), (ExitStatus{.status = 0}));
    desktop_.startBar();
    desktop_.startOrganiser();
    for (const std::string& program : oneOfEachToolkit) {
        desktop_.startProgram(program);
    }
    EXPECT_TRUE(waitFor([&] { return desktop_.order() == order; }))
        << ::testing::PrintToString(desktop_.order());
    collapse();
    EXPECT_EQ(desktop_.visibleSection().size(), 1U);
}

TEST_F(CollapseTests, TheSectionKeepsItsStateWhenTheBarIsRestarted) {
    const std::vector<std::string> order = desktop_.order();
    collapse();
    for (const int signal : {SIGKILL, SIGTERM}) {
        desktop_.bar().process().signal(signal);
        ASSERT_TRUE(desktop_.bar().process().waitForExit());
        desktop_.startBar();
        EXPECT_TRUE(waitFor([&] { return desktop_.items().size() == order.size(); }))
            << ::testing::PrintToString(desktop_.items());
        EXPECT_TRUE(desktop_.waitUntilCollapsed());
        EXPECT_EQ(desktop_.order(), order);
    }
    ASSERT_TRUE(desktop_.clickControl(Button::Left, {keys::alt}));
    EXPECT_TRUE(desktop_.waitUntilExpanded());
}

TEST_F(CollapseTests, HoweverTheOrganiserDiesTheIconsAreBack) {
    for (const int signal : {SIGKILL, SIGTERM, SIGINT, SIGSEGV}) {
        collapse();
        desktop_.organiser().process().signal(signal);
        const auto status = desktop_.organiser().process().waitForExit();
        ASSERT_TRUE(status);
        if (signal == SIGTERM || signal == SIGINT) {
            EXPECT_EQ(status, (ExitStatus{.status = 0})) << log();
        }
        EXPECT_TRUE(waitFor([this] {
            return desktop_.items().size() == oneOfEachToolkit.size() &&
                   desktop_.everythingIsOnScreen();
        })) << ::testing::PrintToString(desktop_.items());
        desktop_.startOrganiser();
        ASSERT_TRUE(desktop_.waitUntilExpanded());
        EXPECT_EQ(desktop_.hiddenSection().size(), oneOfEachToolkit.size());
    }
}

TEST_F(CollapseTests, ItMayStartCollapsed) {
    desktop_.organiser().process().terminate();
    desktop_.startOrganiser({"--start-collapsed"});
    EXPECT_TRUE(desktop_.waitUntilCollapsed()) << log();
}

TEST_F(CollapseTests, TheCollapsedLengthFollowsTheScreen) {
    collapse();
    desktop_.setScreenSize(1000, 700);
    EXPECT_TRUE(waitFor([this] {
        const auto divider = desktop_.organiser().dividerFrame();
        return divider && divider->width == 2000 && desktop_.hiddenSectionIsOffScreen();
    })) << ::testing::PrintToString(desktop_.items());
}

TEST_F(CollapseTests, ARightClickOpensTheSettingsAndChangesNothingElse) {
    collapse();
    ASSERT_TRUE(desktop_.clickControl(Button::Right));
    XClient& x = desktop_.x();
    ASSERT_TRUE(waitFor([&] { return x.managedWindow("Pelistra Settings").has_value(); })) << log();
    const xcb_window_t window = *x.managedWindow("Pelistra Settings");
    EXPECT_TRUE(waitFor([&] {
        const auto frame = x.frame(window);
        return frame && frame->width == 680 && frame->height == 600;
    }));
    EXPECT_TRUE(waitFor([&] { return x.isViewable(window); }));
    EXPECT_TRUE(waitFor([&] {
        return x.words(x.root(), "_NET_ACTIVE_WINDOW") == std::vector<std::uint32_t>{window};
    }));
    EXPECT_TRUE(desktop_.organiser().isCollapsed());
    // Asked for again, the same window comes.
    ASSERT_TRUE(desktop_.clickControl(Button::Right));
    EXPECT_TRUE(staysTrue([&] { return desktop_.organiserWindows() == std::vector{window}; },
                          std::chrono::milliseconds(300)));
}

TEST_F(CollapseTests, TheOrganiserIsInNoTaskbarAndNoPager) {
    XClient& x = desktop_.x();
    EXPECT_THAT(desktop_.organiserWindows(), IsEmpty());
    const auto isOutOfBoth = [&] {
        const auto windows = desktop_.organiserWindows();
        return windows.size() == 1 &&
               x.hasAtom(windows.front(), "_NET_WM_STATE", "_NET_WM_STATE_SKIP_TASKBAR") &&
               x.hasAtom(windows.front(), "_NET_WM_STATE", "_NET_WM_STATE_SKIP_PAGER");
    };
    // Window managers take the states away from a window that is closed.
    for (int showing = 0; showing < 2; ++showing) {
        ASSERT_TRUE(desktop_.clickControl(Button::Right));
        ASSERT_TRUE(waitFor([&] { return x.managedWindow("Pelistra Settings").has_value(); }))
            << log();
        EXPECT_TRUE(waitFor(isOutOfBoth));
        x.requestClose(*x.managedWindow("Pelistra Settings"));
        ASSERT_TRUE(waitFor([&] { return desktop_.organiserWindows().empty(); }));
    }
    const auto onboarding =
        desktop_.display().start({(builtPrograms() / "pelistra").string(), "--show-onboarding"});
    ASSERT_TRUE(waitFor([&] { return x.managedWindow("Welcome to Pelistra").has_value(); }));
    EXPECT_TRUE(waitFor(isOutOfBoth));
}

TEST_F(CollapseTests, TheWindowThatIsLeftGetsTheFocus) {
    XClient& x = desktop_.x();
    ASSERT_TRUE(desktop_.clickControl(Button::Right));
    ASSERT_TRUE(waitFor([&] { return x.managedWindow("Pelistra Settings").has_value(); })) << log();
    const auto onboarding =
        desktop_.display().start({(builtPrograms() / "pelistra").string(), "--show-onboarding"});
    ASSERT_TRUE(waitFor([&] { return x.managedWindow("Welcome to Pelistra").has_value(); }));
    const auto isActive = [&](const char* title) {
        const auto window = x.managedWindow(title);
        return window && x.words(x.root(), "_NET_ACTIVE_WINDOW") == std::vector{*window};
    };
    ASSERT_TRUE(waitFor([&] { return isActive("Welcome to Pelistra"); }));
    x.requestClose(*x.managedWindow("Welcome to Pelistra"));
    EXPECT_TRUE(waitFor([&] { return isActive("Pelistra Settings"); }));
    desktop_.input().tapKey(keys::escape);
    EXPECT_TRUE(waitFor([&] { return desktop_.organiserWindows().empty(); }));
}

TEST_F(CollapseTests, ASecondStartHandsItsSwitchOverAndEnds) {
    XClient& x = desktop_.x();
    const auto items = desktop_.items();
    const std::string program = (builtPrograms() / "pelistra").string();
    const auto plain = desktop_.display().start({program});
    EXPECT_EQ(plain->waitForExit(), (ExitStatus{.status = 0})) << plain->output();
    EXPECT_THAT(desktop_.organiserWindows(), IsEmpty());
    const auto settings = desktop_.display().start({program, "--show-settings"});
    EXPECT_EQ(settings->waitForExit(), (ExitStatus{.status = 0})) << settings->output();
    EXPECT_TRUE(waitFor([&] { return x.managedWindow("Pelistra Settings").has_value(); }));
    const auto onboarding = desktop_.display().start({program, "--show-onboarding"});
    EXPECT_EQ(onboarding->waitForExit(), (ExitStatus{.status = 0})) << onboarding->output();
    EXPECT_TRUE(waitFor([&] { return x.managedWindow("Welcome to Pelistra").has_value(); }));
    EXPECT_EQ(desktop_.items(), items);
}

} // namespace
} // namespace pelistra::testing
