#include "platform/macos/AppKitScreens.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/NotificationObserver.h"

#import <AppKit/AppKit.h>

#include <memory>
#include <utility>

namespace pelistra::macos {

namespace {

// A screen without a camera housing reports the empty rectangle.
std::optional<ScreenRect> area(NSRect rect) {
    return NSIsEmptyRect(rect) ? std::nullopt : std::optional(screenRect(rect));
}

Screen screenOf(NSScreen* screen) {
    return {.frame = screenRect([screen frame]),
            .visibleFrame = screenRect([screen visibleFrame]),
            .auxiliaryTopLeftArea = area([screen auxiliaryTopLeftArea]),
            .auxiliaryTopRightArea = area([screen auxiliaryTopRightArea])};
}

} // namespace

std::vector<Screen> AppKitScreens::screens() const {
    std::vector<Screen> result;
    for (NSScreen* screen in [NSScreen screens]) {
        result.push_back(screenOf(screen));
    }
    return result;
}

std::optional<Screen> AppKitScreens::main() const {
    NSScreen* screen = [NSScreen mainScreen];
    return screen != nil ? std::optional(screenOf(screen)) : std::nullopt;
}

SubscriptionPtr AppKitScreens::observeParameterChanges(std::function<void()> handler) {
    return std::make_unique<NotificationObserver>(
        NSApplicationDidChangeScreenParametersNotification, std::move(handler));
}

} // namespace pelistra::macos
