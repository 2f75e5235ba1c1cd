#include "Format.h"
#include "World.h"

using namespace pelistra::testing::standins;

namespace {

NSString* string(const std::optional<std::string>& text) {
    return text ? [NSString stringWithUTF8String:text->c_str()] : nil;
}

const RunningApp* find(pid_t pid) {
    const auto found = world().applications.find(pid);
    return found != world().applications.end() ? &found->second : nullptr;
}

} // namespace

NSNotificationName const NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification =
    @"NSWorkspaceAccessibilityDisplayOptionsDidChangeNotification";

@implementation StandinRunningApplication

+ (instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid {
    if (find(pid) == nullptr) {
        return nil;
    }
    StandinRunningApplication* application = [[[self alloc] init] autorelease];
    application->processIdentifier = pid;
    return application;
}

+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
    NSMutableArray* result = [NSMutableArray array];
    for (const auto& [pid, application] : world().applications) {
        if (application.bundleIdentifier == [bundleIdentifier UTF8String]) {
            [result addObject:[self runningApplicationWithProcessIdentifier:pid]];
        }
    }
    return result;
}

- (BOOL)isEqual:(id)other {
    return [other isKindOfClass:[StandinRunningApplication class]] &&
           [other processIdentifier] == processIdentifier;
}

- (NSUInteger)hash {
    return static_cast<NSUInteger>(processIdentifier);
}

- (pid_t)processIdentifier {
    return processIdentifier;
}

- (BOOL)isTerminated {
    const RunningApp* application = find(processIdentifier);
    return application == nullptr || application->isTerminated;
}

- (NSString*)localizedName {
    const RunningApp* application = find(processIdentifier);
    return application != nullptr ? string(application->name) : nil;
}

- (NSString*)bundleIdentifier {
    const RunningApp* application = find(processIdentifier);
    return application != nullptr ? string(application->bundleIdentifier) : nil;
}

- (NSURL*)bundleURL {
    const RunningApp* application = find(processIdentifier);
    return application != nullptr && application->bundlePath
               ? [NSURL fileURLWithPath:string(application->bundlePath)]
               : nil;
}

// A new object at every call, as the system's may be.
- (NSImage*)icon {
    const RunningApp* application = find(processIdentifier);
    if (application == nullptr || !application->hasIcon) {
        return nil;
    }
    return [NSImage imageWithSize:NSMakeSize(32, 32)
                          flipped:NO
                   drawingHandler:^BOOL(NSRect destination) {
                     [[NSColor orangeColor] setFill];
                     NSRectFill(destination);
                     return YES;
                   }];
}

- (BOOL)activateWithOptions:(NSApplicationActivationOptions)options {
    record(format("NSRunningApplication {} activateWithOptions {}", processIdentifier, options));
    const RunningApp* application = find(processIdentifier);
    return application != nullptr && application->activates;
}

@end

// A test program has no bundle.
@implementation NSBundle (Standin)

- (NSString*)bundleIdentifier {
    return self == [NSBundle mainBundle] ? string(world().bundleIdentifier) : nil;
}

@end

@implementation StandinWorkspace

+ (StandinWorkspace*)sharedWorkspace {
    static StandinWorkspace* workspace = [[StandinWorkspace alloc] init];
    return workspace;
}

- (NSArray*)runningApplications {
    NSMutableArray* result = [NSMutableArray array];
    for (const auto& [pid, application] : world().applications) {
        [result addObject:[StandinRunningApplication runningApplicationWithProcessIdentifier:pid]];
    }
    return result;
}

- (BOOL)openURL:(NSURL*)url {
    record(format("NSWorkspace openURL {}", [[url path] UTF8String]));
    return world().opensUrls;
}

- (NSNotificationCenter*)notificationCenter {
    static NSNotificationCenter* center = [[NSNotificationCenter alloc] init];
    return center;
}

- (BOOL)accessibilityDisplayShouldReduceMotion {
    return world().reduceMotion;
}

@end

@implementation StandinScreen

+ (StandinScreen*)screenWith:(const ScreenShape&)shape {
    StandinScreen* screen = [[[StandinScreen alloc] init] autorelease];
    screen->frame = shape.frame;
    screen->visibleFrame = shape.visibleFrame;
    screen->auxiliaryTopLeftArea = shape.auxiliaryTopLeftArea;
    screen->auxiliaryTopRightArea = shape.auxiliaryTopRightArea;
    return screen;
}

+ (NSArray*)screens {
    NSMutableArray* result = [NSMutableArray array];
    for (const ScreenShape& shape : world().screens) {
        [result addObject:[self screenWith:shape]];
    }
    return result;
}

+ (StandinScreen*)mainScreen {
    return [[self screens] firstObject];
}

- (NSRect)frame {
    return frame;
}

- (NSRect)visibleFrame {
    return visibleFrame;
}

- (NSRect)auxiliaryTopLeftArea {
    return auxiliaryTopLeftArea;
}

- (NSRect)auxiliaryTopRightArea {
    return auxiliaryTopRightArea;
}

@end
