#include "platform/linux/PanelLook.h"

namespace pelistra::desktop {

namespace {

// A lighter foreground is that of a dark bar.
constexpr int lightestDark = 127;

} // namespace

PanelLook::PanelLook(TrayHost& trayHost, Published<Look>& desktop, Published<Look>& panels)
    : trayHost_(trayHost), panels_(panels),
      desktopChanges_(desktop.observe([this](const Look& look) { follow(look); })),
      trayChanges_(
          trayHost.observe([this, &desktop](TrayHost::Change) { follow(desktop.get()); })) {
    follow(desktop.get());
}

void PanelLook::follow(Look desktop) {
    const auto& tray = trayHost_.tray();
    if (tray && tray->barWindow != XCB_WINDOW_NONE && tray->foreground) {
        desktop.isDark = tray->foreground->lightness() > lightestDark;
    }
    if (desktop != panels_.get()) {
        panels_.set(desktop);
    }
}

} // namespace pelistra::desktop
