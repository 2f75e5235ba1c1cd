#pragma once

#include "platform/StatusBar.h"
#include "platform/WindowList.h"
#include "platform/macos/Owned.h"

#import <AppKit/AppKit.h>

#include <memory>
#include <vector>

namespace pelistra::macos {

// The system's menu bar, by NSStatusBar.
class AppKitStatusBar final : public StatusBar {
public:
    [[nodiscard]] std::unique_ptr<StatusItem> statusItem(double withLength) override;

    // The windows of the visible items that live now, read from their buttons, as the window
    // server of macOS 15 lists them. An item whose button has no window is left out.
    [[nodiscard]] std::vector<WindowInfo> ownWindows() const;
    // What the menu bar looks like where the items are, which is not what the system's windows look
    // like: dark on a dark desktop picture. Nil while there is no item with a button.
    [[nodiscard]] NSAppearance* appearance() const;

private:
    // Shared with the items, which take themselves out.
    using Items = std::vector<Owned<NSStatusItem*>>;
    std::shared_ptr<Items> items_ = std::make_shared<Items>();
};

} // namespace pelistra::macos
