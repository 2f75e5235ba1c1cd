#include "ui/OnboardingView.h"

#include "tests/platform/FakeLoginItem.h"
#include "tests/ui/ViewQueries.h"
#include "ui/Palette.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>

namespace pelistra::testing {
namespace {

using namespace ui;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Step = OnboardingView::Step;

class OnboardingViewTest : public ::testing::Test {
protected:
    [[nodiscard]] std::string primaryLabel() const { return texts(primaryButton().label).front(); }
    [[nodiscard]] Button primaryButton() const { return all<Button>(view_->navigation()).back(); }
    [[nodiscard]] Alert alert() const { return only<WithAlert>(view_->body()).alert; }
    [[nodiscard]] std::string caption() const { return only<Text>(view_->progressHeader()).text; }
    void toggle(bool on) {
        view_->move(2);
        only<Toggle>(view_->body()).action(on);
    }

    Journal journal_;
    FakeLoginItem loginItem_{journal_};
    std::vector<bool> completions_;
    std::unique_ptr<OnboardingView> view_ = std::make_unique<OnboardingView>(
        loginItem_, [this](bool value) { completions_.push_back(value); });
};

TEST_F(OnboardingViewTest, StepsHaveTheirRawValuesInOrder) {
    EXPECT_THAT(OnboardingView::allSteps,
                ElementsAre(Step::Welcome, Step::Divider, Step::Arrange, Step::Ready));
    EXPECT_EQ(static_cast<int>(Step::Welcome), 0);
    EXPECT_EQ(static_cast<int>(Step::Divider), 1);
    EXPECT_EQ(static_cast<int>(Step::Arrange), 2);
    EXPECT_EQ(static_cast<int>(Step::Ready), 3);
}

TEST_F(OnboardingViewTest, StartsAtTheWelcome) {
    EXPECT_EQ(view_->step.get(), Step::Welcome);
    EXPECT_FALSE(view_->environment().reduceMotion);
    EXPECT_THAT(completions_, IsEmpty());
}

TEST_F(OnboardingViewTest, MoveShowsTheStepWithThatRawValue) {
    for (const Step step : OnboardingView::allSteps) {
        view_->move(static_cast<int>(step));
        EXPECT_EQ(view_->step.get(), step);
    }
}

TEST_F(OnboardingViewTest, MoveIgnoresEveryOtherIndex) {
    view_->move(2);
    for (const int index :
         {-1, 4, 5, std::numeric_limits<int>::min(), std::numeric_limits<int>::max(), 256, 258}) {
        view_->move(index);
        EXPECT_EQ(view_->step.get(), Step::Arrange) << index;
    }
}

TEST_F(OnboardingViewTest, TheCaptionReadsCharacterForCharacter) {
    EXPECT_EQ(caption(), "第 1 步，共 4 步  ·  欢迎");
    view_->move(1);
    EXPECT_EQ(caption(), "第 2 步，共 4 步  ·  认识分隔线");
    view_->move(2);
    EXPECT_EQ(caption(), "第 3 步，共 4 步  ·  摆放图标");
    view_->move(3);
    EXPECT_EQ(caption(), "第 4 步，共 4 步  ·  完成");
}

TEST_F(OnboardingViewTest, TheCaptionHasTwoPlainSpacesOnEachSideOfAMiddleDot) {
    EXPECT_NE(caption().find("\xE6\xAD\xA5  \xC2\xB7  \xE6\xAC\xA2"), std::string::npos);
}

TEST_F(OnboardingViewTest, TheHeaderIsCapsulesSpaceAndCaption) {
    view_->move(2);
    const auto capsule = [](double width, const Color& color) {
        return View(FilledShape{.outline = Capsule(), .fill = color})
            .frame({.width = width, .height = 8});
    };
    const Color reached = {.base = Role::Accent};
    const Color ahead = {.base = Role::Secondary, .opacity = 0.2};
    const View expected =
        HStack{.spacing = spacing::small,
               .children = {capsule(8, reached), capsule(8, reached), capsule(28, reached),
                            capsule(8, ahead), Spacer(),
                            Text{.text = "第 3 步，共 4 步  ·  摆放图标",
                                 .font = {.size = TextStyle::Caption, .weight = Weight::Medium}}}};
    EXPECT_TRUE(view_->progressHeader() == expected);
}

TEST_F(OnboardingViewTest, TheWelcomeHasNoWayBack) {
    EXPECT_THAT(texts(view_->navigation()), ElementsAre("继续"));
}

TEST_F(OnboardingViewTest, EveryOtherStepHasOne) {
    for (const int index : {1, 2}) {
        view_->move(index);
        EXPECT_THAT(texts(view_->navigation()), ElementsAre("返回", "继续"));
    }
    view_->move(3);
    EXPECT_THAT(texts(view_->navigation()), ElementsAre("返回", "开始使用 Pelistra"));
}

TEST_F(OnboardingViewTest, TheNavigationIsARowWithFlexibleSpaceBetween) {
    view_->move(1);
    const auto children = asNode<HStack>(view_->navigation()).children;
    ASSERT_EQ(children.size(), 3);
    const auto back = only<Button>(children[0]);
    EXPECT_EQ(back.style, ButtonStyle::Borderless);
    EXPECT_FALSE(back.isDefaultAction);
    EXPECT_NE(children[1].as<Spacer>(), nullptr);
    EXPECT_EQ(only<Button>(children[2]), primaryButton());
}

TEST_F(OnboardingViewTest, ThePrimaryButtonIsLargeProminentAndTheDefaultAction) {
    for (const int index : {0, 1, 2, 3}) {
        view_->move(index);
        const auto button = primaryButton();
        EXPECT_EQ(button.style, ButtonStyle::BorderedProminent);
        EXPECT_EQ(button.size, ControlSize::Large);
        EXPECT_TRUE(button.isDefaultAction);
    }
}

TEST_F(OnboardingViewTest, WalksForwardToTheEndAndBackToTheStart) {
    for (const Step step : {Step::Divider, Step::Arrange, Step::Ready}) {
        primaryButton().action();
        EXPECT_EQ(view_->step.get(), step);
    }
    for (const Step step : {Step::Arrange, Step::Divider, Step::Welcome}) {
        buttonNamed(view_->navigation(), "返回").action();
        EXPECT_EQ(view_->step.get(), step);
    }
    EXPECT_THAT(completions_, IsEmpty());
}

TEST_F(OnboardingViewTest, TheLastButtonCompletesWithFalse) {
    view_->move(3);
    primaryButton().action();
    EXPECT_THAT(completions_, ElementsAre(false));
    EXPECT_EQ(view_->step.get(), Step::Ready);
}

TEST_F(OnboardingViewTest, MayBeDroppedByTheCompletion) {
    view_ = std::make_unique<OnboardingView>(loginItem_, [this](bool) { view_.reset(); });
    view_->move(3);
    primaryButton().action();
    EXPECT_EQ(view_, nullptr);
}

TEST_F(OnboardingViewTest, ABackButtonOfAnEarlierBodyGoesFromWhereItIsNow) {
    view_->move(3);
    const auto stale = buttonNamed(view_->navigation(), "返回");
    view_->move(0);
    stale.action();
    EXPECT_EQ(view_->step.get(), Step::Welcome);
}

TEST_F(OnboardingViewTest, HoldsHeaderStepAndNavigationOverTheBackground) {
    for (const int index : {0, 1, 2, 3}) {
        view_->move(index);
        const auto backed = all<Background>(view_->body()).front();
        EXPECT_TRUE(backed.ignoresSafeArea);
        EXPECT_TRUE(backed.behind == OnboardingView::background());
        const auto frame = asNode<Frame>(backed.content);
        EXPECT_EQ(frame.limits, (FrameLimits{.minWidth = 680, .minHeight = 500}));
        const auto stack = asNode<VStack>(frame.content);
        ASSERT_EQ(stack.children.size(), 3);
        EXPECT_TRUE(asNode<Padding>(stack.children[0]).content == view_->progressHeader());
        EXPECT_EQ(only<Identified>(stack.children[1]).key, Key(static_cast<std::uint64_t>(index)));
        EXPECT_TRUE(asNode<Padding>(stack.children[2]).content == view_->navigation());
    }
}

TEST_F(OnboardingViewTest, AStepChangeIsASpringWithScaling) {
    view_->move(1);
    const auto animated = only<Animated>(view_->body());
    EXPECT_EQ(animated.value, 1);
    EXPECT_EQ(animated.animation,
              Animation(Spring{.response = 0.42, .dampingFraction = 0.86, .blendDuration = 0}));
    EXPECT_EQ(only<Entering>(view_->body()).transition, Transition{.scale = 0.98});
}

TEST_F(OnboardingViewTest, WithReducedMotionItIsAShortFade) {
    view_->setEnvironment({.reduceMotion = true});
    const auto animated = only<Animated>(view_->body());
    EXPECT_EQ(animated.animation, Animation(EaseOut{.seconds = 0.12}));
    EXPECT_EQ(only<Entering>(view_->body()).transition, Transition{.scale = 1});
}

TEST_F(OnboardingViewTest, OnlyAStepChangeIsAnimated) {
    const auto before = only<Animated>(view_->body()).value;
    toggle(true);
    view_->move(0);
    EXPECT_EQ(only<Animated>(view_->body()).value, before);
}

TEST_F(OnboardingViewTest, TheAlertIsAbsentAtFirst) {
    const auto shown = alert();
    EXPECT_FALSE(shown.isPresented);
    EXPECT_EQ(shown.title, "登录时启动");
    EXPECT_EQ(shown.button, (AlertButton{.label = "好", .role = ButtonRole::Cancel}));
    EXPECT_FALSE(shown.button.action);
}

TEST_F(OnboardingViewTest, ARefusedChangePresentsTheSystemsText) {
    loginItem_.refusal = "Operation not permitted";
    toggle(true);
    EXPECT_TRUE(alert().isPresented);
    EXPECT_EQ(alert().message, "Operation not permitted");
    EXPECT_FALSE(only<Toggle>(view_->body()).isOn);
}

TEST_F(OnboardingViewTest, ARefusalWithoutATextHasAFallback) {
    loginItem_.refusal = "";
    toggle(true);
    EXPECT_TRUE(alert().isPresented);
    EXPECT_EQ(alert().message, "无法更新登录项。");
}

TEST_F(OnboardingViewTest, DismissingClearsNothingAndALaterSuccessEndsTheAlert) {
    loginItem_.refusal = "no";
    toggle(true);
    alert().button.action();
    EXPECT_EQ(view_->launchAtLogin.errorMessage.get(), "no");
    EXPECT_TRUE(alert().isPresented);

    loginItem_.refusal.reset();
    toggle(true);
    EXPECT_EQ(view_->launchAtLogin.errorMessage.get(), std::nullopt);
    EXPECT_FALSE(alert().isPresented);
}

TEST_F(OnboardingViewTest, EveryRefusalIsANewOccasionForTheAlert) {
    EXPECT_EQ(alert().occasion, 0);
    loginItem_.refusal = "no";
    toggle(true);
    EXPECT_EQ(alert().occasion, 1);
    // Moving on and back asks for no second alert.
    view_->move(1);
    EXPECT_EQ(alert().occasion, 1);
    toggle(true);
    EXPECT_EQ(alert().occasion, 2);
    loginItem_.refusal.reset();
    toggle(true);
    EXPECT_EQ(alert().occasion, 2);
}

TEST_F(OnboardingViewTest, AnnouncesStepsAndTheLoginItem) {
    int announcements = 0;
    const auto token = view_->observe([&] { ++announcements; });
    view_->move(2);
    EXPECT_EQ(announcements, 1);
    only<Toggle>(view_->body()).action(true);
    EXPECT_EQ(announcements, 3);
    view_->setEnvironment({.reduceMotion = true});
    EXPECT_EQ(announcements, 4);
    view_->move(9);
    EXPECT_EQ(announcements, 4);
}

TEST_F(OnboardingViewTest, WhatItGaveAwayDoesNothingOnceItIsGone) {
    view_->move(2);
    const View body = view_->body();
    view_.reset();
    only<Toggle>(body).action(true);
    for (const auto& button : all<Button>(body)) {
        button.action();
    }
    EXPECT_THAT(journal_.entries(), IsEmpty());
    EXPECT_THAT(completions_, IsEmpty());
}

TEST_F(OnboardingViewTest, AnUnchangedStateGivesAnEqualBody) {
    EXPECT_TRUE(view_->body() == view_->body());
    const View before = view_->body();
    view_->move(1);
    EXPECT_FALSE(view_->body() == before);
}

} // namespace
} // namespace pelistra::testing
