#include "platform/macos/OtherCopy.h"

#include "platform/macos/AppKitApplication.h"
#include "platform/macos/Owned.h"

#import <AppKit/AppKit.h>

#include <unistd.h>

namespace pelistra::macos {

bool anotherCopyRuns(NSString* bundleIdentifier) {
    if (bundleIdentifier == nil) {
        return false;
    }
    for (NSRunningApplication* application in
         [NSRunningApplication runningApplicationsWithBundleIdentifier:bundleIdentifier]) {
        // One that is ending just now leaves its place in a moment.
        if ([application processIdentifier] != ::getpid() && ![application isTerminated]) {
            return true;
        }
    }
    return false;
}

void sayThatAnotherCopyRuns() {
    const auto alert = Owned<NSAlert*>::adopt([[NSAlert alloc] init]);
    [alert.get() setMessageText:@"Pelistra 已在运行"];
    [alert.get()
        setInformativeText:
            @"两份 Pelistra 会争用菜单栏的同一位置。请先退出正在运行的那一份，再打开这一份。"];
    AppKitApplication().activateIgnoringOtherApps();
    [alert.get() runModal];
}

} // namespace pelistra::macos
