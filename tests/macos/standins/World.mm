#include "World.h"

#include "Counters.h"

#include <algorithm>
#include <memory>

namespace pelistra::testing::standins {

namespace {

std::unique_ptr<World> theWorld;
int unrecordedDepth = 0;

constexpr double patience = 10;
// How many turns without an event it takes for timers, and what they put off, to be served.
constexpr int lastTurns = 5;

// One turn of the run loop; whether there was an event. Events of the window system are part of
// its work.
bool turn(NSDate* until) {
    NSEvent* event = [NSApp nextEventMatchingMask:NSAnyEventMask
                                        untilDate:until
                                           inMode:NSDefaultRunLoopMode
                                          dequeue:YES];
    if (event != nil) {
        [NSApp sendEvent:event];
    }
    return event != nil;
}

} // namespace

World& world() {
    if (!theWorld) {
        resetWorld();
    }
    return *theWorld;
}

void resetWorld() {
    theWorld = std::make_unique<World>();
    theWorld->screens = {
        {.frame = NSMakeRect(0, 0, 1512, 982), .visibleFrame = NSMakeRect(0, 70, 1512, 888)}};
    forgetMonitors();
    forgetObserversAndTimers();
    layOutMenuBar();
}

Unrecorded::Unrecorded() { ++unrecordedDepth; }

Unrecorded::~Unrecorded() { --unrecordedDepth; }

void record(const std::string& line) {
    if (unrecordedDepth == 0) {
        world().journal.push_back(line);
    }
}

std::vector<std::string> recorded(std::string_view prefix) {
    std::vector<std::string> result;
    std::ranges::copy_if(world().journal, std::back_inserter(result),
                         [prefix](const auto& line) { return line.starts_with(prefix); });
    return result;
}

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

void tellScreenChange() {
    layOutMenuBar();
    [[NSNotificationCenter defaultCenter]
        postNotificationName:NSApplicationDidChangeScreenParametersNotification
                      object:NSApp];
}

Counts liveCounts() {
    return {.statusItems = liveStatusItems(),
            .monitors = liveMonitors(),
            .observers = liveObservers(),
            .timers = liveTimers(),
            .coreObjects = liveCoreObjects(),
            .openLibraries = openLibraries()};
}

} // namespace pelistra::testing::standins
