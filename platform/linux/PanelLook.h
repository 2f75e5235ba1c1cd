#pragma once

#include "platform/Published.h"
#include "platform/Subscription.h"
#include "platform/linux/TrayHost.h"
#include "platform/linux/views/Look.h"

namespace pelistra::desktop {

// Keeps the look of what hangs below the menu bar: the desktop's, but as dark as our bar is, whose
// colours the pictures of its icons are made for. Under any other tray it is the desktop's.
class PanelLook {
public:
    // All three outlive this object.
    PanelLook(TrayHost& trayHost, Published<Look>& desktop, Published<Look>& panels);
    PanelLook(const PanelLook&) = delete;
    PanelLook& operator=(const PanelLook&) = delete;
    ~PanelLook() = default;

private:
    void follow(Look desktop);

    TrayHost& trayHost_;
    Published<Look>& panels_;
    SubscriptionPtr desktopChanges_;
    SubscriptionPtr trayChanges_;
};

} // namespace pelistra::desktop
