#include "ui/OnboardingView.h"

#include "ui/Nodes.h"
#include "ui/Palette.h"

#include <optional>
#include <string_view>
#include <utility>

namespace pelistra::ui {

namespace {

using Step = OnboardingView::Step;

constexpr double calmFadeSeconds = 0.12;
constexpr Spring stepSpring = {.response = 0.42, .dampingFraction = 0.86, .blendDuration = 0};
constexpr double enteringScale = 0.98;

constexpr std::string_view titleOf(Step step) {
    switch (step) {
    case Step::Divider:
        return "认识分隔线";
    case Step::Arrange:
        return "摆放图标";
    case Step::Ready:
        return "完成";
    case Step::Welcome:
        break;
    }
    return "欢迎";
}

View progressCapsule(Step step, Step current) {
    constexpr double thickness = 8;
    constexpr double currentWidth = 28;
    const Color color = step <= current ? Color{.base = Role::Accent}
                                        : Color{.base = Role::Secondary, .opacity = 0.2};
    return View(FilledShape{.outline = Capsule(), .fill = color})
        .frame({.width = step == current ? currentWidth : thickness, .height = thickness});
}

} // namespace

OnboardingView::OnboardingView(LoginItem& loginItem, std::function<void(bool)> onComplete)
    : launchAtLogin(loginItem), onComplete_(std::move(onComplete)),
      failureCounter_(launchAtLogin.errorMessage.observe(
          [this](const std::optional<std::string>& message) { failures_ += message ? 1 : 0; })) {}

std::vector<SubscriptionPtr> OnboardingView::observeState(const std::function<void()>& changed) {
    std::vector<SubscriptionPtr> tokens;
    tokens.push_back(observeChanges(launchAtLogin.isEnabled, changed));
    tokens.push_back(observeChanges(launchAtLogin.errorMessage, changed));
    tokens.push_back(observeChanges(step, changed));
    return tokens;
}

View OnboardingView::body() {
    const bool reduceMotion = environment().reduceMotion;
    // Steps that come and go lie over each other, so that neither pushes the other away.
    const View content =
        View(ZStack{.children = {currentStep()
                                     .transition({.scale = reduceMotion ? 1 : enteringScale})
                                     .id(static_cast<std::uint64_t>(stepIndex()))}})
            .frame({.maxWidth = infinity, .maxHeight = infinity});
    const Edges above = {.top = spacing::section,
                         .leading = spacing::margin,
                         .bottom = 0,
                         .trailing = spacing::margin};
    const Edges below = {.top = 0,
                         .leading = spacing::margin,
                         .bottom = spacing::section,
                         .trailing = spacing::margin};
    const View whole = View(VStack{.children = {progressHeader().padding(above),
                                                content.padding(Edges::horizontal(spacing::margin)),
                                                navigation().padding(below)}})
                           .frame({.minWidth = minimumWidth, .minHeight = minimumHeight})
                           .background(background(), true);
    const Animation animation =
        reduceMotion ? Animation(EaseOut{.seconds = calmFadeSeconds}) : Animation(stepSpring);
    return errorAlert(whole.animation(animation, stepIndex()));
}

void OnboardingView::move(int to) {
    if (to >= 0 && to < static_cast<int>(allSteps.size())) {
        step.set(allSteps[static_cast<std::size_t>(to)]);
    }
}

View OnboardingView::progressHeader() const {
    std::vector<View> children;
    children.reserve(allSteps.size() + 2);
    for (const Step each : allSteps) {
        children.push_back(progressCapsule(each, step.get()));
    }
    children.emplace_back(Spacer());
    const std::string caption = "第 " + std::to_string(stepIndex() + 1) + " 步，共 " +
                                std::to_string(allSteps.size()) + " 步  ·  " +
                                std::string(titleOf(step.get()));
    children.emplace_back(
        Text{.text = caption, .font = {.size = TextStyle::Caption, .weight = Weight::Medium}});
    return HStack{.spacing = spacing::small, .children = std::move(children)};
}

View OnboardingView::currentStep() {
    switch (step.get()) {
    case Step::Divider:
        return dividerStep();
    case Step::Arrange:
        return arrangeStep();
    case Step::Ready:
        return readyStep();
    case Step::Welcome:
        break;
    }
    return welcomeStep();
}

View OnboardingView::navigation() {
    std::vector<View> children;
    if (step.get() != Step::Welcome) {
        children.push_back(View(Button{.label = Text{.text = "返回"},
                                       .action = lifetime_.guard([this] { move(stepIndex() - 1); }),
                                       .style = ButtonStyle::Borderless})
                               .id("back"));
    }
    children.emplace_back(Spacer());
    const bool isLast = step.get() == Step::Ready;
    children.push_back(View(Button{.label = Text{.text = isLast ? "开始使用 Pelistra" : "继续"},
                                   .action = lifetime_.guard([this] { advance(); }),
                                   .style = ButtonStyle::BorderedProminent,
                                   .size = ControlSize::Large,
                                   .isDefaultAction = true})
                           .id("forward"));
    return HStack{.spacing = spacing::small, .children = std::move(children)};
}

void OnboardingView::advance() {
    if (step.get() != Step::Ready) {
        move(stepIndex() + 1);
    } else if (const auto complete = onComplete_) {
        complete(false);
    }
}

View OnboardingView::errorAlert(const View& over) const {
    const auto& error = launchAtLogin.errorMessage.get();
    const bool hasText = error && !error->empty();
    return over.alert({.title = "登录时启动",
                       .message = hasText ? *error : "无法更新登录项。",
                       .button = {.label = "好", .role = ButtonRole::Cancel},
                       .isPresented = error.has_value(),
                       .occasion = failures_});
}

} // namespace pelistra::ui
