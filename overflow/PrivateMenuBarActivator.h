#pragma once

#include "base/Logger.h"
#include "overflow/OverflowItem.h"
#include "overflow/OverflowServices.h"
#include "overflow/PrivateMenuBarBridge.h"
#include "platform/EventPosting.h"

#include <memory>

namespace pelistra {

// Opens an icon's own menu without moving the user's pointer: one left click at the centre of its
// window, posted straight to the owning process and addressed to that window.
class PrivateMenuBarActivator {
public:
    PrivateMenuBarActivator(std::shared_ptr<PrivateMenuBarBridge> bridge,
                            const OverflowServices& services);

    // True when both events were posted and the pointer stayed where it was. Does not wait for the
    // target to react, and remembers nothing of an earlier failure.
    [[nodiscard]] bool activate(const OverflowItem& item) const;

private:
    [[nodiscard]] std::unique_ptr<MouseEvent> addressedEvent(EventSource& source, EventType type,
                                                             Point location,
                                                             const OverflowItem& item) const;
    [[nodiscard]] bool post(const OverflowItem& item, const MouseEvent& down,
                            const MouseEvent& up) const;

    std::shared_ptr<PrivateMenuBarBridge> bridge_;
    Logger logger_;
    Application& application_;
    RunningApplications& runningApplications_;
    EventPosting& eventPosting_;
};

} // namespace pelistra
