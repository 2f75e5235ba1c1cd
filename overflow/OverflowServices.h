#pragma once

#include "platform/Platform.h"

namespace pelistra {

// What overflow discovery asks of the platform. All of it outlives the bridge and the store.
struct OverflowServices {
    Application& application;
    LogSink& log;
    WindowList& windowList;
    PrivateLibrary& privateLibrary;
    RunningApplications& runningApplications;
    ScreenCapture& screenCapture;
    EventPosting& eventPosting;

    [[nodiscard]] static OverflowServices of(const Platform& platform) {
        return {.application = platform.application,
                .log = platform.log,
                .windowList = platform.windowList,
                .privateLibrary = platform.privateLibrary,
                .runningApplications = platform.runningApplications,
                .screenCapture = platform.screenCapture,
                .eventPosting = platform.eventPosting};
    }
};

} // namespace pelistra
