#pragma once

#include "base/HandlerList.h"
#include "base/Lifetime.h"
#include "platform/MainQueue.h"
#include "platform/Screens.h"
#include "platform/linux/loop/EventPump.h"
#include "platform/linux/screens/Coordinates.h"
#include "platform/linux/screens/ScreenLayout.h"
#include "platform/linux/statusitem/TrayHost.h"

namespace pelistra::linux {

// The monitors as RandR describes them; without RandR, the root window is the one screen.
class X11Screens final : public Screens {
public:
    X11Screens(x11::Connection& connection, EventPump& pump, TrayHost& trayHost,
               MainQueue& mainQueue);

    [[nodiscard]] std::vector<Screen> screens() const override;
    [[nodiscard]] std::optional<Screen> main() const override;
    [[nodiscard]] SubscriptionPtr observeParameterChanges(std::function<void()> handler) override;

    // The translation between root pixels and points that holds now.
    [[nodiscard]] Coordinates coordinates() const;

private:
    // What was so last when the server does not answer.
    [[nodiscard]] ScreenFacts facts() const;
    [[nodiscard]] std::vector<Monitor> monitors() const;
    [[nodiscard]] std::optional<RootRect> workArea() const;
    [[nodiscard]] std::optional<ScreenPoint> focusedPoint() const;
    void handle(const xcb_generic_event_t& event);
    void scheduleComparison();
    void compare();

    x11::Connection& connection_;
    TrayHost& trayHost_;
    MainQueue& mainQueue_;
    xcb_atom_t workAreaAtom_ = XCB_ATOM_NONE;
    xcb_atom_t currentDesktopAtom_ = XCB_ATOM_NONE;
    std::vector<Screen> lastScreens_;
    mutable ScreenFacts lastFacts_;
    bool comparisonIsScheduled_ = false;
    HandlerList<> observers_;
    SubscriptionPtr events_;
    SubscriptionPtr recoveries_;
    SubscriptionPtr trayChanges_;
    Lifetime lifetime_;
};

} // namespace pelistra::linux
