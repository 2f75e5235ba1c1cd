#pragma once

#include "platform/Panel.h"
#include "platform/macos/views/HostingServices.h"

namespace pelistra::appkit {

// Floating panels, by NSPanel.
class AppKitPanels final : public Panels {
public:
    explicit AppKitPanels(const HostingServices& services) : services_(services) {}

    [[nodiscard]] std::unique_ptr<Panel> panel(Size contentSize, std::uint32_t styleMask) override;

private:
    HostingServices services_;
};

} // namespace pelistra::appkit
