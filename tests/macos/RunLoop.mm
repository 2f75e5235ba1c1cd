#include "tests/macos/RunLoop.h"

#import <AppKit/AppKit.h>

namespace pelistra::testing::standins {

namespace {

constexpr double patience = 10;
// How many turns without an event it takes for timers, and what they put off, to be served.
constexpr int lastTurns = 5;

// One turn of the run loop; whether there was an event. Events of the window system are part of
// its work.
bool turn(NSDate* until) {
    NSEvent* event = [NSApp nextEventMatchingMask:static_cast<NSEventMask>(NSUIntegerMax)
                                        untilDate:until
                                           inMode:NSDefaultRunLoopMode
                                          dequeue:YES];
    if (event != nil) {
        [NSApp sendEvent:event];
    }
    return event != nil;
}

} // namespace

bool runUntil(const std::function<bool()>& condition) {
    NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:patience];
    while (!condition()) {
        if ([end timeIntervalSinceNow] < 0) {
            return false;
        }
        runFor(0.005);
    }
    return true;
}

void runFor(double seconds) {
    @autoreleasepool {
        NSDate* const end = [NSDate dateWithTimeIntervalSinceNow:seconds];
        do {
            turn(end);
        } while ([end timeIntervalSinceNow] > 0);
        // On a busy machine the time may be over before what was due in it was served.
        for (int idle = 0; idle < lastTurns; ++idle) {
            if (turn([NSDate distantPast])) {
                idle = 0;
            }
        }
    }
}

} // namespace pelistra::testing::standins
