#pragma once

#include "base/Published.h"
#include "base/Subscription.h"
#include "platform/linux/views/Look.h"
#include "platform/linux/windows/WindowsModule.h"

#include <functional>
#include <optional>

namespace pelistra::linux {

// Keeps the look of what hangs below the menu bar: the desktop's, but as dark as our bar is, whose
// colours the pictures of its icons are made for. Under any other tray it is the desktop's.
class PanelLook {
public:
    // Both looks outlive this object.
    PanelLook(const WindowServices& services, Published<Look>& desktop, Published<Look>& panels);
    PanelLook(const PanelLook&) = delete;
    PanelLook& operator=(const PanelLook&) = delete;
    ~PanelLook() = default;

private:
    void follow(Look desktop);

    std::function<std::optional<bool>()> barIsDark_;
    Published<Look>& panels_;
    SubscriptionPtr desktopChanges_;
    SubscriptionPtr barChanges_;
};

} // namespace pelistra::linux
