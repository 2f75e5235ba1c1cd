#pragma once

#include "base/Lifetime.h"
#include "platform/linux/loop/EventPump.h"
#include "platform/linux/statusitem/TrayHost.h"
#include "platform/linux/statusitem/TrayStatusItem.h"

#include <functional>
#include <vector>

namespace pelistra::linux {

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
    // A tray has laid the items out this much after they were docked or have grown.
    static constexpr Seconds layoutTime{1.0};
    static constexpr int mostEjections = 5;

    // Calls `roomIsLacking` whenever nothing can be hidden in the tray that is there.
    TrayStatusBar(const StatusItemServices& services, EventPump& pump, MainQueue& mainQueue,
                  std::function<void()> roomIsLacking);
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
    void scheduleCheck();
    // Looks at what a tray that is not our menu bar has made of the items.
    void checkLayout();
    // Docks the items the other way round, for trays that lay out from left to right or sort their
    // icons. False when that has been tried.
    bool dockReversed();
    [[nodiscard]] bool areOutOfOrder() const;
    // The tray does not let an item grow, or lets it push others off the screen.
    [[nodiscard]] bool lackRoom() const;
    void itemWasEjected();
    [[nodiscard]] bool itemsAreLaidOut() const;

    StatusItemServices services_;
    EventPump& pump_;
    MainQueue& mainQueue_;
    std::function<void()> roomIsLacking_;
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

} // namespace pelistra::linux
