#pragma once

#include "platform/Lifetime.h"
#include "platform/linux/TrayHost.h"
#include "platform/linux/TrayStatusItem.h"
#include "platform/linux/loop/EventPump.h"

#include <vector>

namespace pelistra::desktop {

// The system tray as the menu bar that our status items live in. Items are docked on the turn after
// they were made, in the order in which they were made, and again whenever a tray comes.
class TrayStatusBar final : public StatusBar {
public:
    // How long the first docking waits for the tray to lay the items out, so that whoever asks for
    // their frames on the next turn finds them.
    static constexpr std::chrono::milliseconds layoutPatience{1000};
    // After having been thrown out, an item comes back this much later, and no more often than
    // mostEjections times into the same tray.
    static constexpr Seconds ejectionPause{1.0};
    // A tray has laid the items out this much after they were docked.
    static constexpr Seconds layoutTime{1.0};
    static constexpr int mostEjections = 5;

    TrayStatusBar(const StatusItemServices& services, EventPump& pump, MainQueue& mainQueue);
    TrayStatusBar(const TrayStatusBar&) = delete;
    TrayStatusBar& operator=(const TrayStatusBar&) = delete;
    ~TrayStatusBar() override = default;

    [[nodiscard]] std::unique_ptr<StatusItem> statusItem(double withLength) override;

private:
    void handle(const xcb_generic_event_t& event);
    void handleTray(TrayHost::Change change);
    void scheduleDocking();
    void dockItems();
    // Asks the tray to take the items that are not in one, in the order in which this tray has to
    // be asked.
    void requestDocking();
    // Docks the items the other way round when the tray has put a later one right of an earlier
    // one, as those do that lay out from left to right.
    void putOrderRight();
    [[nodiscard]] bool areOutOfOrder() const;
    void itemWasEjected();
    [[nodiscard]] bool itemsAreLaidOut() const;

    StatusItemServices services_;
    EventPump& pump_;
    MainQueue& mainQueue_;
    // In the order in which they were made; each takes itself out when it goes.
    std::vector<TrayStatusItem*> items_;
    bool dockingIsScheduled_ = false;
    bool firstDockingIsOver_ = false;
    // The last item is docked first.
    bool isReversed_ = false;
    int ejections_ = 0;
    SubscriptionPtr events_;
    SubscriptionPtr recoveries_;
    SubscriptionPtr trayChanges_;
    Lifetime lifetime_;
};

} // namespace pelistra::desktop
