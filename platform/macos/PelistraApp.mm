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

- (void)showSettings:(id)sender {
    (void)sender;
    appDelegate_->showSettings();
}

@end
