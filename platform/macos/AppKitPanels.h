#pragma once

#include "platform/Panel.h"
#include "platform/macos/views/HostingServices.h"

#import <AppKit/AppKit.h>

#include <functional>

namespace pelistra::macos {

// Floating panels, by NSPanel.
class AppKitPanels final : public Panels {
public:
    // Asked at every show for what the panel is to look like, which hangs below the menu bar; nil
    // for the application's own look.
    using Appearance = std::function<NSAppearance*()>;

    AppKitPanels(const HostingServices& services, Appearance appearance)
        : services_(services), appearance_(std::move(appearance)) {}

    [[nodiscard]] std::unique_ptr<Panel> panel(const PanelConfiguration& configuration) override;

private:
    HostingServices services_;
    Appearance appearance_;
};

} // namespace pelistra::macos
