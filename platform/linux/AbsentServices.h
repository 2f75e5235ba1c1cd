#pragma once

#include "platform/EventPosting.h"
#include "platform/GlobalClicks.h"
#include "platform/LoginItem.h"
#include "platform/Panel.h"

namespace pelistra::desktop {

// Services that are not there. Each answers what its interface has for a system that cannot do it;
// nothing here pretends to have done anything.

// For a server that takes no connection for it.
class AbsentEventPosting final : public EventPosting {
public:
    [[nodiscard]] std::unique_ptr<EventSource> source(EventSourceState state) override;
    [[nodiscard]] std::unique_ptr<MouseEvent>
    mouseEvent(EventSource& source, EventType type, Point location, MouseButton button) override;
    [[nodiscard]] bool postToPid(ProcessId processIdentifier, const MouseEvent& event) override;
};

// Panels that are never on the screen.
class AbsentPanels final : public Panels {
public:
    [[nodiscard]] std::unique_ptr<Panel> panel(Size contentSize, std::uint32_t styleMask) override;
};

class AbsentGlobalClicks final : public GlobalClicks {
public:
    [[nodiscard]] SubscriptionPtr addMonitor(EventMask matching,
                                             std::function<void()> handler) override;
};

class AbsentLoginItem final : public LoginItem {
public:
    [[nodiscard]] LoginItemStatus status() const override { return LoginItemStatus::NotFound; }
    [[nodiscard]] std::optional<std::string> registerItem() override;
    [[nodiscard]] std::optional<std::string> unregisterItem() override;
};

} // namespace pelistra::desktop
