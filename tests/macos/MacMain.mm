#import <AppKit/AppKit.h>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    @autoreleasepool {
        [NSApplication sharedApplication];
        // Neither Dock icon nor menu bar while the tests run.
        [NSApp setActivationPolicy:NSApplicationActivationPolicyAccessory];
        [NSApp finishLaunching];
    }
    return RUN_ALL_TESTS();
}
