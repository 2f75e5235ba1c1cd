#pragma once

#include "base/Lifetime.h"
#include "base/Published.h"
#include "base/Subscription.h"
#include "ui/Content.h"
#include "ui/LaunchAtLoginManager.h"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace pelistra {
class LoginItem;
}

namespace pelistra::ui {

// The content of the onboarding window: four steps, from what the product does to how it is used.
// It starts at the first step; nothing of its progress is kept.
class OnboardingView final : public Content {
public:
    enum class Step : std::int8_t { Welcome = 0, Divider = 1, Arrange = 2, Ready = 3 };
    static constexpr std::array<Step, 4> allSteps = {Step::Welcome, Step::Divider, Step::Arrange,
                                                     Step::Ready};

    // The content is never smaller than this, in points.
    static constexpr double minimumWidth = 680;
    static constexpr double minimumHeight = 500;

    // The login item outlives the view. onComplete is called with false when the user presses the
    // last button.
    OnboardingView(LoginItem& loginItem, std::function<void(bool)> onComplete);

    [[nodiscard]] View body() override;

    // Shows the step with that raw value; any other index is ignored.
    void move(int to);

    // The parts of the body, from top to bottom and from outside in.
    [[nodiscard]] View progressHeader() const;
    [[nodiscard]] static View sampleIcons(int count, double opacity);
    [[nodiscard]] static View welcomeStep();
    [[nodiscard]] static View dividerStep();
    [[nodiscard]] View arrangeStep();
    [[nodiscard]] static View readyStep();
    [[nodiscard]] View navigation();
    [[nodiscard]] static View background();
    [[nodiscard]] static View logo();

    LaunchAtLoginManager launchAtLogin;
    Published<Step> step{Step::Welcome};

protected:
    [[nodiscard]] std::vector<SubscriptionPtr>
    observeState(const std::function<void()>& changed) override;

private:
    [[nodiscard]] int stepIndex() const { return static_cast<int>(step.get()); }
    [[nodiscard]] View currentStep();
    [[nodiscard]] View errorAlert(const View& over) const;
    void advance();

    std::function<void(bool)> onComplete_;
    // How many changes of the login item have failed so far: the occasions of the alert.
    std::uint64_t failures_ = 0;
    SubscriptionPtr failureCounter_;
    Lifetime lifetime_;
};

} // namespace pelistra::ui
