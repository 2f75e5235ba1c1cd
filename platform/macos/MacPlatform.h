#pragma once

#include "platform/Platform.h"
#include "platform/macos/AppKitApplication.h"
#include "platform/macos/AppKitImages.h"
#include "platform/macos/AppKitPanels.h"
#include "platform/macos/AppKitScreens.h"
#include "platform/macos/AppKitStatusBar.h"
#include "platform/macos/AppKitWindows.h"
#include "platform/macos/CoreGraphicsEventPosting.h"
#include "platform/macos/CoreGraphicsScreenCapture.h"
#include "platform/macos/CoreGraphicsWindowList.h"
#include "platform/macos/DispatchMainQueue.h"
#include "platform/macos/GlobalEventMonitor.h"
#include "platform/macos/MainAppLoginItem.h"
#include "platform/macos/SkyLightLibrary.h"
#include "platform/macos/StandardUserDefaults.h"
#include "platform/macos/UnifiedLog.h"
#include "platform/macos/WorkspaceApplications.h"

namespace pelistra::macos {

// Every service of the seam on macOS. Made after the shared NSApplication; main thread only.
class MacPlatform {
public:
    MacPlatform() = default;
    MacPlatform(const MacPlatform&) = delete;
    MacPlatform& operator=(const MacPlatform&) = delete;

    // Valid as long as this object lives.
    [[nodiscard]] Platform platform();

private:
    AppKitApplication application_;
    DispatchMainQueue mainQueue_;
    UnifiedLog log_;
    StandardUserDefaults defaults_;
    AppKitStatusBar statusBar_;
    AppKitScreens screens_;
    AppKitImages images_;
    CoreGraphicsWindowList windowList_{[this] { return statusBar_.ownWindows(); }, log_};
    SkyLightLibrary privateLibrary_;
    WorkspaceApplications runningApplications_;
    CoreGraphicsScreenCapture screenCapture_;
    CoreGraphicsEventPosting eventPosting_{log_};
    HostingServices hosting_{
        .application = &application_, .mainQueue = &mainQueue_, .images = &images_};
    AppKitWindows windows_{hosting_};
    AppKitPanels panels_{hosting_, [this] { return statusBar_.appearance(); }};
    GlobalEventMonitor globalClicks_;
    MainAppLoginItem loginItem_;
};

} // namespace pelistra::macos
