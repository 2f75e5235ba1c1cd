#include "platform/macos/MacPlatform.h"

namespace pelistra::macos {

Platform MacPlatform::platform() {
    return {.application = application_,
            .mainQueue = mainQueue_,
            .log = log_,
            .defaults = defaults_,
            .statusBar = statusBar_,
            .screens = screens_,
            .images = images_,
            .windowList = windowList_,
            .privateLibrary = privateLibrary_,
            .runningApplications = runningApplications_,
            .screenCapture = screenCapture_,
            .eventPosting = eventPosting_,
            .windows = windows_,
            .panels = panels_,
            .globalClicks = globalClicks_,
            .loginItem = loginItem_};
}

} // namespace pelistra::macos
