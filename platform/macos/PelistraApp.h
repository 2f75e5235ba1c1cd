#pragma once

#import <AppKit/AppKit.h>

#include <memory>

namespace pelistra {
class AppDelegate;
namespace macos {
class MacPlatform;
}
} // namespace pelistra

// Installs the core's delegate as the application's, before launch finishes.
@interface PelistraApp : NSObject <NSApplicationDelegate> {
    // Both are empty in a second copy, which only says so and ends.
    std::unique_ptr<pelistra::macos::MacPlatform> platform_;
    std::unique_ptr<pelistra::AppDelegate> appDelegate_;
}
- (void)showSettings:(id)sender;
@end
