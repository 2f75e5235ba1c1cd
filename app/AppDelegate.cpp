#include "app/AppDelegate.h"

#include "platform/Application.h"
#include "platform/MainQueue.h"
#include "platform/UserDefaults.h"
#include "platform/Window.h"
#include "statusbar/StatusBarController.h"
#include "ui/OnboardingView.h"
#include "ui/SettingsView.h"

#include <utility>

namespace pelistra {
namespace {

constexpr Size settingsContentSize{.width = 680, .height = 600};
constexpr Size onboardingContentSize{.width = 760, .height = 560};
constexpr Size onboardingContentMinSize{.width = 680, .height = 500};

} // namespace

AppDelegate::AppDelegate(const Platform& platform)
    : platform_(platform), preferences_(platform.defaults, platform.application) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    platform_.application.setActivationPolicy(ActivationPolicy::Accessory);
    statusBarController_ = std::make_unique<StatusBarController>(
        platform_, lifetime_.guard([this] { showSettings(); }));

    if (!preferences_.defaults().boolForKey(preferences_.onboardingCompletedKey())) {
        scheduleOnboarding();
    }
    if (hasArgument(platform_.application, "--show-settings")) {
        platform_.mainQueue.async(lifetime_.guard([this] { showSettings(); }));
    } else if (hasArgument(platform_.application, "--show-onboarding")) {
        scheduleOnboarding();
    }
}

void AppDelegate::scheduleOnboarding() {
    platform_.mainQueue.async(lifetime_.guard([this] { showOnboarding(); }));
}

void AppDelegate::showSettings() {
    if (settingsWindowController_ == nullptr) {
        settingsWindowController_ = makeSettingsWindow();
    }
    settingsWindowController_->showWindow();
    platform_.application.activateIgnoringOtherApps();
}

void AppDelegate::showOnboarding() {
    if (onboardingWindowController_ == nullptr) {
        onboardingWindowController_ = makeOnboardingWindow();
    }
    onboardingWindowController_->showWindow();
    platform_.application.activateIgnoringOtherApps();
}

void AppDelegate::completeOnboarding() {
    preferences_.defaults().setBool(true, preferences_.onboardingCompletedKey());
    if (onboardingWindowController_ == nullptr) {
        return;
    }
    onboardingWindowController_->close();
    // The window goes one turn later: its own button may be what completed onboarding, and must
    // outlive its click.
    closedWindows_.push_back(std::move(onboardingWindowController_));
    platform_.mainQueue.async(lifetime_.guard([this] { closedWindows_.clear(); }));
}

std::unique_ptr<Window> AppDelegate::makeSettingsWindow() {
    auto window = platform_.windows.window(
        settingsContentSize, window_style::titled | window_style::closable |
                                 window_style::miniaturizable | window_style::resizable);
    window->setTitle("Pelistra Settings");
    window->setContent(std::make_shared<ui::SettingsView>(
        platform_.application, platform_.loginItem, lifetime_.guard([this] { showOnboarding(); })));
    window->center();
    return window;
}

std::unique_ptr<Window> AppDelegate::makeOnboardingWindow() {
    auto window = platform_.windows.window(onboardingContentSize,
                                           window_style::titled | window_style::closable |
                                               window_style::fullSizeContentView);
    window->setTitle("Welcome to Pelistra");
    window->setTitleVisibility(TitleVisibility::Hidden);
    window->setTitlebarAppearsTransparent(true);
    window->setMovableByWindowBackground(true);
    window->setReleasedWhenClosed(false);
    window->setContentMinSize(onboardingContentMinSize);
    window->setContent(std::make_shared<ui::OnboardingView>(
        platform_.loginItem, lifetime_.guard([this](bool) { completeOnboarding(); })));
    window->center();
    return window;
}

} // namespace pelistra
