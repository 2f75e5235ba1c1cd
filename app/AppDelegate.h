#pragma once

#include "app/PreferencesStore.h"
#include "base/Lifetime.h"
#include "platform/Platform.h"

#include <memory>
#include <vector>

namespace pelistra {

class StatusBarController;
class Window;

// Starts the application up, and owns its status-bar controller and its two ordinary windows. Main
// thread only.
class AppDelegate {
public:
    // Does no work yet.
    explicit AppDelegate(const Platform& platform);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    ~AppDelegate();

    // Makes the application an accessory, puts the items into the menu bar, and schedules the
    // windows that the onboarding flag and the switches ask for.
    void applicationDidFinishLaunching();

    // Opens the settings window, or shows the one that is there again, and activates the
    // application.
    void showSettings();

    // The same for the onboarding window.
    void showOnboarding();

    // Records that onboarding was completed and closes its window; the next showOnboarding() makes
    // a fresh one.
    void completeOnboarding();

private:
    void scheduleOnboarding();
    [[nodiscard]] std::unique_ptr<Window> makeSettingsWindow();
    [[nodiscard]] std::unique_ptr<Window> makeOnboardingWindow();

    Platform platform_;
    PreferencesStore preferences_;
    std::unique_ptr<StatusBarController> statusBarController_;
    std::unique_ptr<Window> settingsWindowController_;
    std::unique_ptr<Window> onboardingWindowController_;
    std::vector<std::unique_ptr<Window>> closedWindows_;
    Lifetime lifetime_;
};

} // namespace pelistra
