#include "platform/macos/PelistraApp.h"

#include "app/AppDelegate.h"
#include "platform/macos/MacPlatform.h"
#include "platform/macos/MainMenu.h"
#include "platform/macos/OtherCopy.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace {

constexpr std::array<std::string_view, 4> switches = {
    "--show-settings", "--show-onboarding", "--start-collapsed", "--verify-section-layout"};

// macOS has arguments of its own, with one dash.
void logUnknownSwitches(const pelistra::Platform& platform) {
    const pelistra::Logger logger(platform.log, "application");
    for (const std::string& argument : platform.application.arguments()) {
        if (argument.starts_with("--") && std::ranges::find(switches, argument) == switches.end()) {
            logger.error("Unknown switch is ignored: " + argument);
        }
    }
}

} // namespace

@implementation PelistraApp

- (void)applicationWillFinishLaunching:(NSNotification*)notification {
    (void)notification;
    // Said when the launch is over, before which no window comes to the front.
    if (pelistra::macos::anotherCopyRuns([[NSBundle mainBundle] bundleIdentifier])) {
        return;
    }
    platform_ = std::make_unique<pelistra::macos::MacPlatform>();
    logUnknownSwitches(platform_->platform());
    appDelegate_ = std::make_unique<pelistra::AppDelegate>(platform_->platform());
    [NSApp setMainMenu:pelistra::macos::makeMainMenu(self, @selector(showSettings:)).get()];
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
    (void)notification;
    if (appDelegate_ == nullptr) {
        pelistra::macos::sayThatAnotherCopyRuns();
        [NSApp terminate:nil];
        return;
    }
    appDelegate_->applicationDidFinishLaunching();
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application {
    (void)application;
    return YES;
}

// The application was opened once more, from the Finder or by its name. It has no Dock icon and may
// have no visible item.
- (BOOL)applicationShouldHandleReopen:(NSApplication*)application
                    hasVisibleWindows:(BOOL)hasVisibleWindows {
    (void)hasVisibleWindows;
    [self showSettings:application];
    return NO;
}

- (void)showSettings:(id)sender {
    (void)sender;
    if (appDelegate_ != nullptr) {
        appDelegate_->showSettings();
    }
}

@end
