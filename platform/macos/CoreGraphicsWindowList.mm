#include "platform/macos/CoreGraphicsWindowList.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/Owned.h"

#import <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <unistd.h>

namespace pelistra::macos {

namespace {

id entry(NSDictionary* dictionary, CFStringRef key) {
    return [dictionary objectForKey:(__bridge NSString*)key];
}

NSNumber* numberOf(id object) { return [object isKindOfClass:[NSNumber class]] ? object : nil; }

// Empty when there is no number, or one that is no such integer.
template <class Integer> std::optional<Integer> integerOf(id object) {
    NSNumber* number = numberOf(object);
    if (number == nil || [number doubleValue] != std::trunc([number doubleValue]) ||
        [number doubleValue] < static_cast<double>(std::numeric_limits<Integer>::min()) ||
        [number doubleValue] > static_cast<double>(std::numeric_limits<Integer>::max())) {
        return std::nullopt;
    }
    return static_cast<Integer>([number longLongValue]);
}

// The object, when it is a dictionary with strings as keys and objects of that class as values.
NSDictionary* dictionaryOf(id object, Class valueClass) {
    if (![object isKindOfClass:[NSDictionary class]]) {
        return nil;
    }
    NSDictionary* dictionary = object;
    for (id key in dictionary) {
        if (![key isKindOfClass:[NSString class]] ||
            ![[dictionary objectForKey:key] isKindOfClass:valueClass]) {
            return nil;
        }
    }
    return dictionary;
}

std::optional<double> member(NSDictionary* dictionary, NSString* key) {
    NSNumber* number = [dictionary objectForKey:key];
    return number != nil ? std::optional([number doubleValue]) : std::nullopt;
}

// Bounds with anything in them that is no number are none.
std::optional<WindowBounds> boundsOf(id object) {
    NSDictionary* bounds = dictionaryOf(object, [NSNumber class]);
    if (bounds == nil) {
        return std::nullopt;
    }
    return WindowBounds{.x = member(bounds, @"X"),
                        .y = member(bounds, @"Y"),
                        .width = member(bounds, @"Width"),
                        .height = member(bounds, @"Height")};
}

WindowInfo infoOf(NSDictionary* window) {
    WindowInfo info;
    if (NSNumber* number = numberOf(entry(window, kCGWindowNumber))) {
        info.number = [number unsignedIntValue];
    }
    info.ownerPid = integerOf<ProcessId>(entry(window, kCGWindowOwnerPID));
    info.layer = integerOf<std::int64_t>(entry(window, kCGWindowLayer));
    info.ownerName = textOf(entry(window, kCGWindowOwnerName));
    info.name = textOf(entry(window, kCGWindowName));
    info.bounds = boundsOf(entry(window, kCGWindowBounds));
    return info;
}

} // namespace

std::optional<std::vector<WindowInfo>> CoreGraphicsWindowList::copyWindowInfo() {
    const auto windows = Owned<id>::share(
        CFBridgingRelease(CGWindowListCopyWindowInfo(kCGWindowListOptionAll, kCGNullWindowID)));
    if (![windows.get() isKindOfClass:[NSArray class]]) {
        return std::nullopt;
    }
    std::vector<WindowInfo> result;
    for (id window in windows.get()) {
        NSDictionary* described = dictionaryOf(window, [NSObject class]);
        if (described == nil) {
            return std::nullopt;
        }
        result.push_back(infoOf(described));
    }
    addOwnItems(result);
    return result;
}

void CoreGraphicsWindowList::addOwnItems(std::vector<WindowInfo>& list) {
    if (std::ranges::any_of(list, [](const WindowInfo& window) {
            return window.ownerPid == ::getpid() && window.layer == statusWindowLayer;
        })) {
        return;
    }
    for (WindowInfo& own : ownItems_()) {
        // No number occurs twice, whoever the list has under it.
        if (std::ranges::find(list, own.number, &WindowInfo::number) != list.end()) {
            own.number.reset();
        }
        list.push_back(std::move(own));
        if (!std::exchange(saidSo_, true)) {
            logger_.info("The window list has none of our status items; they are read from their "
                         "own windows");
        }
    }
}

} // namespace pelistra::macos
