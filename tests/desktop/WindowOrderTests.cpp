// Which window is in front, under window managers of two kinds: one that lets programs put
// themselves forward, and one that keeps them from it.

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/WindowsUnderTest.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;

constexpr const char* otherTitle = "Somebody else's window";
// Whatever comes after the right thing has happened comes by then.
constexpr std::chrono::milliseconds afterwards{400};

class WindowOrderTests : public ::testing::TestWithParam<const char*> {
protected:
    void SetUp() override {
        const std::string manager = GetParam();
        if (manager != "openbox") {
            manager_ = desktop_.display().start({manager, "--replace", "--compositor=off"});
            ASSERT_TRUE(waitFor([&] { return managerName() == "Xfwm4"; })) << manager_->output();
        }
        AccessibleTree::letProgramsSpeak(desktop_.display());
        desktop_.startBar();
        desktop_.startOrganiser();
    }

    [[nodiscard]] std::string managerName() {
        XClient& x = desktop_.x();
        const auto check = x.words(x.root(), "_NET_SUPPORTING_WM_CHECK");
        return check.empty() ? "" : x.title(check.front());
    }
    void startAgain(const std::string& option) {
        const auto second =
            desktop_.display().start({(builtPrograms() / "pelistra").string(), option});
        EXPECT_EQ(second->waitForExit(), (ExitStatus{.status = 0})) << second->output();
    }
    void rightClickArrow() { EXPECT_TRUE(desktop_.clickControl(UserInput::Button::Right)); }
    void showOther() {
        XClient& x = desktop_.x();
        const xcb_window_t window = x.connection().newId();
        xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, window, x.root(), 100, 100, 900, 600, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        x11::setText(x.connection(), window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, otherTitle);
        xcb_map_window(x.get(), window);
        x.sync();
        ASSERT_TRUE(waitFor([&] { return stack().size() == 3 && stack().back() == otherTitle; }))
            << ::testing::PrintToString(stack());
    }
    // The titles of the ordinary windows that show, bottom to top.
    [[nodiscard]] std::vector<std::string> stack() {
        XClient& x = desktop_.x();
        std::vector<std::string> titles;
        for (const xcb_window_t window : x.words(x.root(), "_NET_CLIENT_LIST_STACKING")) {
            std::string title = x.title(window);
            const bool isOne =
                title == settingsTitle || title == onboardingTitle || title == otherTitle;
            if (isOne && !isMinimised(window)) {
                titles.push_back(std::move(title));
            }
        }
        return titles;
    }
    [[nodiscard]] bool isMinimised(xcb_window_t window) {
        return desktop_.x().hasAtom(window, "_NET_WM_STATE", "_NET_WM_STATE_HIDDEN");
    }
    // What a screen reader's user and everybody else sees: active, and above all others.
    [[nodiscard]] bool isInFront(const std::string& title) {
        XClient& x = desktop_.x();
        const auto active = x.words(x.root(), "_NET_ACTIVE_WINDOW");
        const auto order = stack();
        // Some window managers write a second word.
        return !active.empty() && x.title(active.front()) == title && !order.empty() &&
               order.back() == title;
    }
    void expectInFrontForGood(const std::string& title, const std::string& after) {
        EXPECT_TRUE(waitFor([&] { return isInFront(title); }) &&
                    staysTrue([&] { return isInFront(title); }, afterwards))
            << title << " after " << after << ": " << ::testing::PrintToString(stack()) << "\n"
            << desktop_.organiser().process().output();
    }

    Desktop desktop_;
    std::unique_ptr<ChildProcess> manager_;
    AccessibleTree tree_{desktop_.display()};
    WindowsUnderTest windows_{desktop_, tree_};
};

TEST_P(WindowOrderTests, WhatWasAskedForIsInFrontAndAllElseStaysInItsPlace) {
    startAgain("--show-settings");
    expectInFrontForGood(settingsTitle, "a first request");
    startAgain("--show-onboarding");
    expectInFrontForGood(onboardingTitle, "a first request");
    showOther();
    for (int time = 0; time < 2; ++time) {
        startAgain("--show-settings");
        expectInFrontForGood(settingsTitle, "--show-settings");
        EXPECT_THAT(stack(), ElementsAre(onboardingTitle, otherTitle, settingsTitle));
        startAgain("--show-onboarding");
        expectInFrontForGood(onboardingTitle, "--show-onboarding");
        EXPECT_THAT(stack(), ElementsAre(otherTitle, settingsTitle, onboardingTitle));
        rightClickArrow();
        expectInFrontForGood(settingsTitle, "a right click on the arrow");
        EXPECT_THAT(stack(), ElementsAre(otherTitle, onboardingTitle, settingsTitle));
        ASSERT_TRUE(windows_.click("重新查看使用引导"));
        expectInFrontForGood(onboardingTitle, "the button in the settings");
        EXPECT_THAT(stack(), ElementsAre(otherTitle, settingsTitle, onboardingTitle));
        rightClickArrow();
        expectInFrontForGood(settingsTitle, "a right click on the arrow");
        startAgain("--show-onboarding");
        expectInFrontForGood(onboardingTitle, "--show-onboarding");
        desktop_.x().requestActivation(*desktop_.x().managedWindow(otherTitle));
        expectInFrontForGood(otherTitle, "the user's choice");
        EXPECT_THAT(stack(), ElementsAre(settingsTitle, onboardingTitle, otherTitle));
    }
}

TEST_P(WindowOrderTests, AMinimisedWindowStaysSoUntilItIsAskedFor) {
    startAgain("--show-settings");
    expectInFrontForGood(settingsTitle, "a first request");
    const xcb_window_t settings = *desktop_.x().managedWindow(settingsTitle);
    // Once the organiser knows that it shows it asks for the focus, which would bring it back.
    ASSERT_TRUE(waitFor([&] { return windows_.says("使用方法"); }));
    desktop_.x().requestMinimise(settings);
    ASSERT_TRUE(waitFor([&] { return isMinimised(settings); }));
    startAgain("--show-onboarding");
    expectInFrontForGood(onboardingTitle, "--show-onboarding");
    EXPECT_TRUE(isMinimised(settings));
    rightClickArrow();
    expectInFrontForGood(settingsTitle, "a right click on the arrow");
    EXPECT_FALSE(isMinimised(settings));
}

INSTANTIATE_TEST_SUITE_P(, WindowOrderTests, ::testing::Values("openbox", "xfwm4"),
                         [](const auto& manager) { return std::string(manager.param); });

} // namespace
} // namespace pelistra::testing
