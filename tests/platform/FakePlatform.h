#pragma once

#include "platform/Platform.h"
#include "tests/platform/FakeApplication.h"
#include "tests/platform/FakeEventPosting.h"
#include "tests/platform/FakeGlobalClicks.h"
#include "tests/platform/FakeImages.h"
#include "tests/platform/FakeLogSink.h"
#include "tests/platform/FakeLoginItem.h"
#include "tests/platform/FakeMainQueue.h"
#include "tests/platform/FakePanels.h"
#include "tests/platform/FakePrivateLibrary.h"
#include "tests/platform/FakeRunningApplications.h"
#include "tests/platform/FakeScreenCapture.h"
#include "tests/platform/FakeScreens.h"
#include "tests/platform/FakeStatusBar.h"
#include "tests/platform/FakeUserDefaults.h"
#include "tests/platform/FakeWindowList.h"
#include "tests/platform/FakeWindows.h"
#include "tests/platform/Journal.h"

#include <optional>

namespace pelistra::testing {

// All of the fakes over one journal, as the platform that the core is handed.
struct FakePlatform {
    Journal journal;
    FakeApplication application{journal};
    FakeMainQueue mainQueue{journal};
    FakeLogSink log{journal};
    FakeUserDefaults defaults{journal};
    FakeStatusBar statusBar{journal};
    FakeScreens screens{journal};
    FakeImages images{journal};
    FakeWindowList windowList{journal};
    FakePrivateLibrary privateLibrary{journal};
    FakeRunningApplications runningApplications{journal};
    FakeScreenCapture screenCapture{journal};
    FakeEventPosting eventPosting{journal};
    FakeWindows windows{journal};
    FakePanels panels{journal};
    FakeGlobalClicks globalClicks{journal};
    FakeLoginItem loginItem{journal};

    Platform platform{.application = application,
                      .mainQueue = mainQueue,
                      .log = log,
                      .defaults = defaults,
                      .statusBar = statusBar,
                      .screens = screens,
                      .images = images,
                      .windowList = windowList,
                      .privateLibrary = privateLibrary,
                      .runningApplications = runningApplications,
                      .screenCapture = screenCapture,
                      .eventPosting = eventPosting,
                      .windows = windows,
                      .panels = panels,
                      .globalClicks = globalClicks,
                      .loginItem = loginItem};

    // Sends a mouse event to the button: its action runs, with the event as the current one, when
    // its mask asks for events of that type.
    void send(const Event& event, const FakeStatusButton& to) {
        const auto action = to.action;
        if (action && (to.mask & maskOf(event.type)) != 0) {
            application.event = event;
            action();
            application.event.reset();
        }
    }
};

// Fakes for the test that begins, in the place of the last one's: what is made once for the whole
// process, the shared bridge, refers to the fakes of the first test.
[[nodiscard]] inline FakePlatform& freshPlatform() {
    static std::optional<FakePlatform> platform;
    return platform.emplace();
}

} // namespace pelistra::testing
