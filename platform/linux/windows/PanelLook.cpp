#include "platform/linux/windows/PanelLook.h"

namespace pelistra::linux {

PanelLook::PanelLook(const WindowServices& services, Published<Look>& desktop,
                     Published<Look>& panels)
    : barIsDark_(services.barIsDark), panels_(panels),
      desktopChanges_(desktop.observe([this](const Look& look) { follow(look); })),
      barChanges_(services.observeBar([this, &desktop] { follow(desktop.get()); })) {
    follow(desktop.get());
}

void PanelLook::follow(Look desktop) {
    desktop.isDark = barIsDark_().value_or(desktop.isDark);
    if (desktop != panels_.get()) {
        panels_.set(desktop);
    }
}

} // namespace pelistra::linux
