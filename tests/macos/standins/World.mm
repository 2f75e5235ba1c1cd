#include "World.h"

#include "Attachments.h"
#include "Counters.h"

#include <algorithm>
#include <memory>

namespace pelistra::testing::standins {

namespace {

std::unique_ptr<World> theWorld;
int unrecordedDepth = 0;

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

void tellScreenChange() {
    layOutMenuBar();
    [[NSNotificationCenter defaultCenter]
        postNotificationName:NSApplicationDidChangeScreenParametersNotification
                      object:NSApp];
}

Counts liveCounts() {
    return {.views = liveViews(),
            .windowControllers = liveWindowControllers(),
            .statusItems = liveStatusItems(),
            .monitors = liveMonitors(),
            .observers = liveObservers(),
            .timers = liveTimers(),
            .coreObjects = liveCoreObjects(),
            .openLibraries = openLibraries()};
}

} // namespace pelistra::testing::standins
