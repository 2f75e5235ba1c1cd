#include "platform/macos/AppKitApplication.h"

#include "platform/macos/Conversions.h"

#import <AppKit/AppKit.h>

#include <unistd.h>

namespace pelistra::macos {

namespace {

static_assert(static_cast<NSUInteger>(EventType::RightMouseDown) == NSEventTypeRightMouseDown);
static_assert(static_cast<NSUInteger>(EventType::RightMouseUp) == NSEventTypeRightMouseUp);
static_assert(modifierOption == NSEventModifierFlagOption);
static_assert(static_cast<NSInteger>(ActivationPolicy::Accessory) ==
              NSApplicationActivationPolicyAccessory);

} // namespace

Event eventOf(NSEvent* event) {
    return {.type = static_cast<EventType>([event type]),
            .modifierFlags = static_cast<std::uint64_t>([event modifierFlags])};
}

AppKitApplication::AppKitApplication() {
    for (NSString* argument in [[NSProcessInfo processInfo] arguments]) {
        arguments_.push_back(utf8(argument));
    }
}

void AppKitApplication::setActivationPolicy(ActivationPolicy policy) {
    [NSApp setActivationPolicy:static_cast<NSApplicationActivationPolicy>(policy)];
}

void AppKitApplication::activateIgnoringOtherApps() {
// Deprecated since macOS 14, where the cooperative -activate leaves an accessory application's
// window behind the one that the user works in; coming to the front is what is wanted here.
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
    [NSApp activateIgnoringOtherApps:YES];
#pragma clang diagnostic pop
}

void AppKitApplication::terminate() { [NSApp terminate:nil]; }

std::optional<Event> AppKitApplication::currentEvent() const {
    NSEvent* event = [NSApp currentEvent];
    return event != nil ? std::optional(eventOf(event)) : std::nullopt;
}

const std::vector<std::string>& AppKitApplication::arguments() const { return arguments_; }

std::optional<std::string> AppKitApplication::infoText(std::string_view key) const {
    return textOf([[NSBundle mainBundle] objectForInfoDictionaryKey:nsString(key)]);
}

ProcessId AppKitApplication::processIdentifier() const { return ::getpid(); }

ScreenPoint AppKitApplication::mouseLocation() const {
    const NSPoint location = [NSEvent mouseLocation];
    return {.x = location.x, .y = location.y};
}

} // namespace pelistra::macos
