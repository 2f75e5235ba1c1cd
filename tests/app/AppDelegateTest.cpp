#include "app/AppDelegate.h"

#include "tests/platform/FakePlatform.h"
#include "tests/platform/ViewProbe.h"
#include "ui/Content.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr auto flagKey = "hasCompletedOnboarding.1.4.2";
constexpr auto settingsTitle = "Pelistra Settings";
constexpr auto onboardingTitle = "Welcome to Pelistra";

class AppDelegateTest : public ::testing::Test {
protected:
    AppDelegateTest() { fake_.defaults.values[flagKey] = true; }

    void onboardingIsNotDone() { fake_.defaults.values.erase(flagKey); }

    void launch(const std::vector<std::string>& switches = {}) {
        auto& arguments = fake_.application.processArguments;
        arguments.insert(arguments.end(), switches.begin(), switches.end());
        delegate_.emplace(fake_.platform);
        delegate_->applicationDidFinishLaunching();
    }

    // Launches and lets everything pass that was scheduled.
    void launchAndSettle(const std::vector<std::string>& switches = {}) {
        launch(switches);
        fake_.mainQueue.runUntilIdle();
        fake_.journal.clear();
    }

    [[nodiscard]] std::vector<std::string> windowTitles() const {
        std::vector<std::string> titles;
        for (const auto& window : fake_.windows.made) {
            titles.push_back(window->title);
        }
        return titles;
    }

    [[nodiscard]] FakeWindowRecord& window(std::size_t number) {
        return *fake_.windows.made.at(number);
    }

    [[nodiscard]] bool flag() const { return fake_.defaults.boolForKey(flagKey); }

    // Goes through the guide to its last button and presses that.
    void finishGuide(FakeWindowRecord& guide) {
        for (int step = 0; step < 3; ++step) {
            press(guide.content->body(), "继续");
        }
        press(guide.content->body(), "开始使用 Pelistra");
    }

    FakePlatform& fake_ = freshPlatform();
    std::optional<AppDelegate> delegate_;
};

// Start-up.

TEST_F(AppDelegateTest, DoesNothingBeforeLaunchFinishes) {
    delegate_.emplace(fake_.platform);

    EXPECT_THAT(fake_.journal.entries(), IsEmpty());
}

TEST_F(AppDelegateTest, BecomesAnAccessoryBeforeAnythingElse) {
    launch();

    EXPECT_EQ(fake_.journal.entries().at(0), "activationPolicy = 1");
}

TEST_F(AppDelegateTest, PutsTheTwoItemsIntoTheMenuBar) {
    launch();

    ASSERT_THAT(fake_.statusBar.items, SizeIs(2));
    EXPECT_EQ(*fake_.statusBar.items[0]->name, "PelistraV3.Control");
    EXPECT_EQ(*fake_.statusBar.items[1]->name, "PelistraV3.Divider");
}

TEST_F(AppDelegateTest, AFinishedOnboardingIsNotShownAgain) {
    launch();
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(fake_.windows.made, IsEmpty());
}

TEST_F(AppDelegateTest, WithoutSwitchesTheFirstLaunchOpensOnboardingOnce) {
    onboardingIsNotDone();
    launch();
    EXPECT_THAT(fake_.windows.made, IsEmpty());

    fake_.mainQueue.runUntilIdle();
    EXPECT_THAT(windowTitles(), ElementsAre(onboardingTitle));
    EXPECT_EQ(fake_.journal.entriesStartingWith("showWindow").size(), 1U);
}

TEST_F(AppDelegateTest, WindowsAreScheduledAfterTheMenuBarsCheck) {
    onboardingIsNotDone();
    launch();

    EXPECT_EQ(fake_.mainQueue.waitingBlocks(), 2U);
    fake_.mainQueue.runTurn();
    const auto& entries = fake_.journal.entries();
    const auto check = std::ranges::find(entries, "log error: Status item windows are not ready");
    const auto shown = std::ranges::find(entries, "showWindow");
    ASSERT_NE(shown, entries.end());
    EXPECT_LT(check, shown);
}

TEST_F(AppDelegateTest, AFlagThatIsNotABooleanReadsAsNotDone) {
    fake_.defaults.values[flagKey] = std::string("yes");
    launch();
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(windowTitles(), ElementsAre(onboardingTitle));
}

TEST_F(AppDelegateTest, ANewVersionOffersOnboardingAgain) {
    fake_.application.info["CFBundleShortVersionString"] = "1.5";
    launch();
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(windowTitles(), ElementsAre(onboardingTitle));
}

TEST_F(AppDelegateTest, ShowSettingsOpensTheSettings) {
    launch({"--show-settings"});
    EXPECT_THAT(fake_.windows.made, IsEmpty());

    fake_.mainQueue.runUntilIdle();
    EXPECT_THAT(windowTitles(), ElementsAre(settingsTitle));
}

TEST_F(AppDelegateTest, ShowOnboardingOpensOnboarding) {
    launch({"--show-onboarding"});
    EXPECT_THAT(fake_.windows.made, IsEmpty());

    fake_.mainQueue.runUntilIdle();
    EXPECT_THAT(windowTitles(), ElementsAre(onboardingTitle));
}

TEST_F(AppDelegateTest, ShowSettingsWinsOverShowOnboarding) {
    launch({"--show-onboarding", "--show-settings"});
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(windowTitles(), ElementsAre(settingsTitle));
}

TEST_F(AppDelegateTest, OnTheFirstLaunchOnboardingComesBesideTheSettings) {
    onboardingIsNotDone();
    launch({"--show-settings", "--show-onboarding"});
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(windowTitles(), ElementsAre(onboardingTitle, settingsTitle));
}

TEST_F(AppDelegateTest, OnTheFirstLaunchShowOnboardingBringsTheOneWindowForwardAgain) {
    onboardingIsNotDone();
    launch({"--show-onboarding"});
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(windowTitles(), ElementsAre(onboardingTitle));
    EXPECT_EQ(fake_.journal.entriesStartingWith("showWindow").size(), 2U);
    EXPECT_EQ(fake_.journal.entriesStartingWith("activate").size(), 2U);
}

TEST_F(AppDelegateTest, ASwitchIsAWholeArgument) {
    launch({"--show-settings=1", "--show-onboarding2", "show-settings", "--SHOW-SETTINGS"});
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(fake_.windows.made, IsEmpty());
}

TEST_F(AppDelegateTest, TheExecutablesPathCountsAsAnArgument) {
    fake_.application.processArguments = {"--show-settings"};
    launch();
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(windowTitles(), ElementsAre(settingsTitle));
}

TEST_F(AppDelegateTest, WhatIsScheduledDoesNothingOnceTheDelegateIsGone) {
    onboardingIsNotDone();
    launch({"--show-settings"});
    delegate_.reset();
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(fake_.windows.made, IsEmpty());
}

TEST_F(AppDelegateTest, ARightClickOnTheArrowOpensTheSettings) {
    launchAndSettle();
    fake_.send({.type = EventType::RightMouseUp},
               *fake_.statusBar.item("PelistraV3.Control").button);

    EXPECT_THAT(windowTitles(), ElementsAre(settingsTitle));
}

// The settings window.

TEST_F(AppDelegateTest, TheSettingsWindowIsMadeInItsOrder) {
    launchAndSettle();
    delegate_->showSettings();

    EXPECT_THAT(fake_.journal.entries(),
                ElementsAre("window(680 x 600, style 15)", "title = Pelistra Settings", "content",
                            "center", "showWindow", "activate"));
}

TEST_F(AppDelegateTest, TheSettingsWindowKeepsThePlatformsReleaseHabit) {
    launchAndSettle();
    delegate_->showSettings();

    EXPECT_FALSE(window(0).releasedWhenClosed.has_value());
}

TEST_F(AppDelegateTest, ASecondRequestShowsTheSameSettingsWindowAgain) {
    launchAndSettle();
    delegate_->showSettings();
    fake_.journal.clear();
    delegate_->showSettings();

    EXPECT_THAT(fake_.journal.entries(), ElementsAre("showWindow", "activate"));
    EXPECT_THAT(fake_.windows.made, SizeIs(1));
}

TEST_F(AppDelegateTest, AClosedSettingsWindowIsShownAgain) {
    launchAndSettle();
    delegate_->showSettings();
    window(0).onScreen = false;
    delegate_->showSettings();

    EXPECT_THAT(fake_.windows.made, SizeIs(1));
    EXPECT_TRUE(window(0).onScreen);
}

TEST_F(AppDelegateTest, TheSettingsWindowHoldsTheSettings) {
    launchAndSettle();
    delegate_->showSettings();

    EXPECT_TRUE(showsText(window(0).content->body(), "找到分隔线"));
}

TEST_F(AppDelegateTest, TheSettingsReopenTheGuide) {
    launchAndSettle();
    delegate_->showSettings();
    press(window(0).content->body(), "重新查看使用引导");

    EXPECT_THAT(windowTitles(), ElementsAre(settingsTitle, onboardingTitle));
    EXPECT_TRUE(window(1).onScreen);
}

TEST_F(AppDelegateTest, TheSettingsDoNothingToADelegateThatIsGone) {
    launchAndSettle();
    delegate_->showSettings();
    const auto content = window(0).content;
    delegate_.reset();
    press(content->body(), "重新查看使用引导");

    EXPECT_THAT(windowTitles(), ElementsAre(settingsTitle));
}

// The onboarding window.

TEST_F(AppDelegateTest, TheOnboardingWindowIsMadeInItsOrder) {
    launchAndSettle();
    delegate_->showOnboarding();

    EXPECT_THAT(fake_.journal.entries(),
                ElementsAre("window(760 x 560, style 32771)", "title = Welcome to Pelistra",
                            "titleVisibility = 1", "titlebarAppearsTransparent = true",
                            "isMovableByWindowBackground = true", "isReleasedWhenClosed = false",
                            "contentMinSize = 680 x 500", "content", "center", "showWindow",
                            "activate"));
}

TEST_F(AppDelegateTest, ASecondRequestShowsTheSameOnboardingWindowAgain) {
    launchAndSettle();
    delegate_->showOnboarding();
    fake_.journal.clear();
    delegate_->showOnboarding();

    EXPECT_THAT(fake_.journal.entries(), ElementsAre("showWindow", "activate"));
    EXPECT_THAT(fake_.windows.made, SizeIs(1));
}

TEST_F(AppDelegateTest, OnboardingStartsAtItsFirstStep) {
    launchAndSettle();
    delegate_->showOnboarding();

    EXPECT_TRUE(showsText(window(0).content->body(), "第 1 步，共 4 步  ·  欢迎"));
}

TEST_F(AppDelegateTest, ClosingTheOnboardingWindowDoesNotCompleteOnboarding) {
    onboardingIsNotDone();
    launchAndSettle();
    window(0).onScreen = false;
    fake_.mainQueue.runUntilIdle();

    EXPECT_FALSE(flag());
    EXPECT_FALSE(window(0).destroyed);
    delegate_->showOnboarding();
    EXPECT_THAT(fake_.windows.made, SizeIs(1));
    EXPECT_TRUE(window(0).onScreen);
}

// Completing onboarding.

TEST_F(AppDelegateTest, CompletingSetsTheFlagBeforeTheWindowCloses) {
    onboardingIsNotDone();
    launchAndSettle();
    delegate_->completeOnboarding();
    fake_.mainQueue.runUntilIdle();

    EXPECT_THAT(fake_.journal.entries(),
                ElementsAre("defaults[hasCompletedOnboarding.1.4.2] = true", "close", "async",
                            "window destroyed"));
}

TEST_F(AppDelegateTest, CompletingWithoutAWindowSetsTheFlag) {
    onboardingIsNotDone();
    delegate_.emplace(fake_.platform);
    delegate_->completeOnboarding();

    EXPECT_TRUE(flag());
    EXPECT_THAT(fake_.journal.entries(),
                ElementsAre("defaults[hasCompletedOnboarding.1.4.2] = true"));
}

TEST_F(AppDelegateTest, TheGuidesLastButtonCompletesOnboardingAndSurvivesItsOwnClick) {
    onboardingIsNotDone();
    launchAndSettle();
    // The last button reports false, which completes like any other report.
    finishGuide(window(0));

    EXPECT_TRUE(flag());
    EXPECT_FALSE(window(0).onScreen);
    EXPECT_FALSE(window(0).destroyed);
    fake_.mainQueue.runTurn();
    EXPECT_TRUE(window(0).destroyed);
}

TEST_F(AppDelegateTest, AWindowThatHasJustClosedGoesWithTheDelegateAtTheLatest) {
    launchAndSettle();
    delegate_->showOnboarding();
    delegate_->completeOnboarding();
    delegate_.reset();

    EXPECT_TRUE(window(0).destroyed);
    EXPECT_NO_THROW(fake_.mainQueue.runUntilIdle());
}

TEST_F(AppDelegateTest, AfterCompletingARelaunchOfTheVersionShowsNothing) {
    onboardingIsNotDone();
    launchAndSettle();
    delegate_->completeOnboarding();
    fake_.mainQueue.runUntilIdle();
    fake_.windows.made.clear();
    launchAndSettle();

    EXPECT_THAT(fake_.windows.made, IsEmpty());
}

TEST_F(AppDelegateTest, AfterCompletingTheGuideOpensAfreshAtItsFirstStep) {
    launchAndSettle();
    delegate_->showOnboarding();
    press(window(0).content->body(), "继续");
    delegate_->completeOnboarding();
    delegate_->showOnboarding();

    ASSERT_THAT(fake_.windows.made, SizeIs(2));
    EXPECT_TRUE(showsText(window(1).content->body(), "第 1 步，共 4 步  ·  欢迎"));
    fake_.mainQueue.runUntilIdle();
    EXPECT_TRUE(window(0).destroyed);
    EXPECT_TRUE(window(1).onScreen);
}

TEST_F(AppDelegateTest, WithoutCompletingTheGuideKeepsItsStep) {
    launchAndSettle();
    delegate_->showOnboarding();
    press(window(0).content->body(), "继续");
    window(0).onScreen = false;
    delegate_->showOnboarding();

    EXPECT_TRUE(showsText(window(0).content->body(), "第 2 步，共 4 步  ·  认识分隔线"));
}

TEST_F(AppDelegateTest, TheGuideDoesNothingToADelegateThatIsGone) {
    onboardingIsNotDone();
    launchAndSettle();
    const auto content = window(0).content;
    delegate_.reset();
    for (int step = 0; step < 3; ++step) {
        press(content->body(), "继续");
    }
    press(content->body(), "开始使用 Pelistra");

    EXPECT_FALSE(flag());
}

TEST_F(AppDelegateTest, ItsEndTakesTheWindowsAndTheItemsAway) {
    launchAndSettle();
    delegate_->showSettings();
    delegate_->showOnboarding();
    delegate_.reset();

    EXPECT_TRUE(window(0).destroyed);
    EXPECT_TRUE(window(1).destroyed);
    EXPECT_TRUE(fake_.statusBar.items.at(0)->removed);
    EXPECT_TRUE(fake_.statusBar.items.at(1)->removed);
}

} // namespace
} // namespace pelistra::testing
