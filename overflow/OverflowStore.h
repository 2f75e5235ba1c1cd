#pragma once

#include "base/Logger.h"
#include "base/Published.h"
#include "overflow/OutermostApplication.h"
#include "overflow/OverflowItem.h"
#include "overflow/OverflowServices.h"
#include "overflow/PrivateMenuBarActivator.h"
#include "overflow/PrivateMenuBarBridge.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra {

// The hidden icons that the second row shows, and the line of text that goes with them. Frames are
// global coordinates in points. Main thread only.
class OverflowStore {
public:
    OverflowStore(std::shared_ptr<PrivateMenuBarBridge> bridge, const OverflowServices& services);

    // The hidden icons from left to right, at most one for each window id.
    Published<std::vector<OverflowItem>> items;
    // The status text; empty when none is shown.
    Published<std::optional<std::string>> message;
    // Whether pictures of icons may be taken.
    Published<bool> hasScreenCapturePermission;

    // Whether the window server can be read at all on this system.
    [[nodiscard]] bool hasSymbols() const { return bridge_->hasSymbols(); }

    // Replaces the items by the icons that stand left of the given divider frame now.
    void snapshot(const Rect& leftOf);

    // Brings the items up to date against the frame of the long, collapsed divider: icons are added
    // and moved, and dropped only when their application has quit. A look that finds no icon at all
    // changes nothing. Never touches the message.
    void refreshWhileCollapsed(const Rect& dividerFrame);

    // Where the item's window is now; empty when that cannot be read.
    [[nodiscard]] std::optional<Rect> currentFrame(const OverflowItem& item) const;

    // Clicks the item so that its own menu opens; false, with a message, when that failed.
    bool activateOriginalMenu(const OverflowItem& item);

    // Opens the application that the item belongs to; false, with a message, when that failed.
    bool openApplication(const OverflowItem& item);

    // Asks the user for the permission to take pictures.
    void requestScreenCapturePermission();

    // Takes a picture of each item that has none, where that is permitted.
    void captureMissingImages();

private:
    [[nodiscard]] std::vector<PrivateMenuBarWindow> windowsEndingAt(double bound,
                                                                    const Rect& dividerFrame) const;
    void captureImage(std::size_t index);

    Application& application_;
    RunningApplications& runningApplications_;
    ScreenCapture& screenCapture_;
    Logger logger_;
    std::shared_ptr<PrivateMenuBarBridge> bridge_;
    PrivateMenuBarActivator activator_;
};

} // namespace pelistra
