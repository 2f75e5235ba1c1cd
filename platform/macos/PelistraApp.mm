#include "platform/macos/PelistraApp.h"

#include "app/AppDelegate.h"
#include "platform/macos/MacPlatform.h"
#include "platform/macos/MainMenu.h"

@implementation PelistraApp

- (void)applicationWillFinishLaunching:(NSNotification*)notification {
    (void)notification;
    platform_ = std::make_unique<pelistra::appkit::MacPlatform>();
    appDelegate_ = std::make_unique<pelistra::AppDelegate>(platform_->platform());
    [NSApp setMainMenu:pelistra::appkit::makeMainMenu(self, @selector(showSettings:)).get()];
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
    (void)notification;
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
    (void)application;
    (void)hasVisibleWindows;
    appDelegate_->showSettings();
    return NO;
}

- (void)showSettings:(id)sender {
    (void)sender;
    appDelegate_->showSettings();
}

@end
