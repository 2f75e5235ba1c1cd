#include "Counters.h"
#include "Format.h"
#include "World.h"

#include <objc/runtime.h>

// Replaces methods of classes that GNUstep really has, so that calls from the front end are
// recorded before they do what they do. What such a method calls inside is not recorded.
namespace pelistra::testing::standins {

namespace {

std::vector<id> observers;
std::vector<NSTimer*> timers;

std::string textOf(BOOL value) { return value ? "YES" : "NO"; }
std::string textOf(NSInteger value) { return std::to_string(value); }
std::string textOf(NSUInteger value) { return std::to_string(value); }
std::string textOf(NSPoint value) { return format("{{{}, {}}}", value.x, value.y); }
std::string textOf(NSSize value) { return format("{{{}, {}}}", value.width, value.height); }
std::string textOf(NSRect value) {
    return format("{} {}", textOf(value.origin), textOf(value.size));
}
std::string textOf(id value) {
    if (value == nil) {
        return "nil";
    }
    if ([value isKindOfClass:[NSString class]]) {
        return format("\"{}\"", [value UTF8String]);
    }
    if ([value isEqual:[NSColor clearColor]]) {
        return "clearColor";
    }
    return class_getName([value class]);
}

template <class Implementation>
Implementation replaceImplementation(Method method, Implementation replacement) {
    using Any = void (*)();
    IMP former =
        method_setImplementation(method, reinterpret_cast<IMP>(reinterpret_cast<Any>(replacement)));
    return reinterpret_cast<Implementation>(reinterpret_cast<Any>(former));
}

// One class per method that is replaced, told apart by its tag.
template <int Tag, class Result, class... Arguments> struct Hook {
    using Implementation = Result (*)(id, SEL, Arguments...);
    static inline Implementation original = nullptr;

    static Result call(id self, SEL selector, Arguments... arguments) {
        std::string line = format("{} {}", class_getName([self class]), sel_getName(selector));
        ((line += " " + textOf(arguments)), ...);
        record(line);
        const Unrecorded inside;
        return original(self, selector, arguments...);
    }

    static void install(Class inClass, SEL selector) {
        Method method = class_getInstanceMethod(inClass, selector);
        original = replaceImplementation(method, &Hook::call);
    }
};

using AddObserver = id (*)(id, SEL, NSString*, id, NSOperationQueue*, id);
AddObserver addObserverOriginal = nullptr;

id addObserver(id self, SEL selector, NSString* name, id object, NSOperationQueue* queue,
               id block) {
    record(format("NSNotificationCenter addObserver {} queue={}", textOf(name),
                  queue == [NSOperationQueue mainQueue] ? "main" : "other"));
    const Unrecorded inside;
    // GNUstep serves its main queue on threads of its own. On the main thread, where everything
    // here is posted, the real one calls the block before the posting ends: as without a queue.
    NSOperationQueue* served = queue == [NSOperationQueue mainQueue] ? nil : queue;
    id token = addObserverOriginal(self, selector, name, object, served, block);
    observers.push_back(token);
    return token;
}

using RemoveObserver = void (*)(id, SEL, id);
RemoveObserver removeObserverOriginal = nullptr;

void removeObserver(id self, SEL selector, id observer) {
    if (std::erase(observers, observer) > 0) {
        record("NSNotificationCenter removeObserver");
    }
    removeObserverOriginal(self, selector, observer);
}

using AddTimer = void (*)(id, SEL, NSTimer*, NSString*);
AddTimer addTimerOriginal = nullptr;

// GNUstep knows the name of the common modes but no such set of modes.
void addTimer(id self, SEL selector, NSTimer* timer, NSString* mode) {
    if (![mode isEqual:NSRunLoopCommonModes]) {
        addTimerOriginal(self, selector, timer, mode);
        return;
    }
    record(format("NSRunLoop addTimer {} NSRunLoopCommonModes", [timer timeInterval]));
    timers.push_back([timer retain]);
    for (NSString* common in
         @[ NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode ]) {
        addTimerOriginal(self, selector, timer, common);
    }
}

// Ends nothing: the tests go on.
void terminate(id self, SEL selector, id sender) {
    (void)self;
    (void)selector;
    (void)sender;
    record("NSApplication terminate:");
}

// GNUstep's look marks the button of the Return key with an arrow; a Mac's does not.
void setKeyEquivalent(id self, SEL selector, NSString* key, id cell) {
    (void)self;
    (void)selector;
    (void)key;
    (void)cell;
}

NSPoint mouseLocation(id self, SEL selector) {
    (void)self;
    (void)selector;
    return world().pointer;
}

std::size_t windowControllers = 0;
using InitWithWindow = id (*)(id, SEL, id);
InitWithWindow initWithWindowOriginal = nullptr;
using Dealloc = void (*)(id, SEL);
Dealloc deallocControllerOriginal = nullptr;

id initWithWindow(id self, SEL selector, id window) {
    record("NSWindowController initWithWindow: " + textOf(window));
    ++windowControllers;
    const Unrecorded inside;
    return initWithWindowOriginal(self, selector, window);
}

void deallocController(id self, SEL selector) {
    --windowControllers;
    deallocControllerOriginal(self, selector);
}

template <class Implementation>
Implementation replace(Class inClass, SEL selector, Implementation replacement) {
    return replaceImplementation(class_getInstanceMethod(inClass, selector), replacement);
}

void forgetInvalidTimers() {
    std::erase_if(timers, [](NSTimer* timer) {
        const bool over = ![timer isValid];
        if (over) {
            [timer release];
        }
        return over;
    });
}

void installWindowRecording() {
    Class window = [NSWindow class];
    Hook<0, id, NSRect, NSUInteger, NSUInteger, BOOL>::install(
        window, @selector(initWithContentRect:styleMask:backing:defer:));
    Hook<1, void, id>::install(window, @selector(setTitle:));
    Hook<2, void, BOOL>::install(window, @selector(setReleasedWhenClosed:));
    Hook<3, void, NSSize>::install(window, @selector(setContentMinSize:));
    Hook<4, void, BOOL>::install(window, @selector(setMovableByWindowBackground:));
    Hook<5, void>::install(window, @selector(center));
    Hook<6, void, id>::install(window, @selector(setContentView:));
    Hook<7, void, NSInteger>::install(window, @selector(setLevel:));
    Hook<8, void, BOOL>::install(window, @selector(setHidesOnDeactivate:));
    Hook<9, void, NSUInteger>::install(window, @selector(setCollectionBehavior:));
    Hook<10, void, BOOL>::install(window, @selector(setOpaque:));
    Hook<11, void, id>::install(window, @selector(setBackgroundColor:));
    Hook<12, void, BOOL>::install(window, @selector(setHasShadow:));
    Hook<13, void, id>::install(window, @selector(orderOut:));
    Hook<14, void>::install(window, @selector(orderFrontRegardless));
    Hook<15, void, NSSize>::install(window, @selector(setContentSize:));
    Hook<22, void>::install(window, @selector(invalidateShadow));
    Hook<16, void, NSPoint>::install(window, @selector(setFrameOrigin:));
    Hook<17, void, BOOL>::install([NSPanel class], @selector(setFloatingPanel:));
    Hook<18, void, id>::install([NSWindowController class], @selector(showWindow:));
    Hook<19, void>::install([NSWindowController class], @selector(close));
}

} // namespace

void installRecording() {
    installWindowRecording();
    Hook<20, void, BOOL>::install([NSApplication class], @selector(activateIgnoringOtherApps:));
    replace([NSApplication class], @selector(terminate:), &terminate);
    replace(NSClassFromString(@"GSTheme"), @selector(setKeyEquivalent:forButtonCell:),
            &setKeyEquivalent);
    replaceImplementation(class_getClassMethod([NSEvent class], @selector(mouseLocation)),
                          &mouseLocation);
    addObserverOriginal =
        replace([NSNotificationCenter class],
                @selector(addObserverForName:object:queue:usingBlock:), &addObserver);
    removeObserverOriginal =
        replace([NSNotificationCenter class], @selector(removeObserver:), &removeObserver);
    initWithWindowOriginal =
        replace([NSWindowController class], @selector(initWithWindow:), &initWithWindow);
    deallocControllerOriginal =
        replace([NSWindowController class], @selector(dealloc), &deallocController);
    addTimerOriginal = replace([NSRunLoop class], @selector(addTimer:forMode:), &addTimer);
}

std::size_t liveWindowControllers() { return windowControllers; }

std::size_t liveObservers() { return observers.size(); }

std::size_t liveTimers() {
    forgetInvalidTimers();
    return timers.size();
}

void forgetObserversAndTimers() {
    observers.clear();
    for (NSTimer* timer : timers) {
        [timer release];
    }
    timers.clear();
}

} // namespace pelistra::testing::standins
