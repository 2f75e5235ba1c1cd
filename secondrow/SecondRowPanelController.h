#pragma once

#include "base/Geometry.h"
#include "base/Lifetime.h"
#include "base/Subscription.h"

#include <functional>
#include <memory>
#include <optional>

namespace pelistra {

class GlobalClicks;
class MainQueue;
class OverflowStore;
class Panel;
class Screens;
class StatusButton;
struct OverflowItem;
struct Platform;

// The second row: a floating panel just below a button of the menu bar, listing the hidden icons.
// Main thread only.
class SecondRowPanelController {
public:
    // Makes the panel, hidden. What the platform refers to outlives the controller.
    SecondRowPanelController(const Platform& platform, std::shared_ptr<OverflowStore> store);
    SecondRowPanelController(const SecondRowPanelController&) = delete;
    SecondRowPanelController& operator=(const SecondRowPanelController&) = delete;
    // Ends the click monitor and the screen observer without telling anyone, and takes the panel
    // down.
    ~SecondRowPanelController();

    // Asked for by the row's arrange button. The panel stays open.
    std::function<void()> onArrange;
    // Asked for by a right click on an icon, after the panel has closed.
    std::function<void(const OverflowItem& item)> onOriginalMenu;
    // Told true after every showing, also a repeated one, and false after every closing.
    std::function<void(bool isVisible)> onVisibilityChanged;

    // Places the panel under the button and shows it; from then on a click in another application
    // closes it. Where it cannot be placed nothing happens, except that the button is remembered
    // (weakly) for the next change of screens.
    void show(const std::shared_ptr<StatusButton>& relativeTo);

    // Hides the panel. Nothing happens, and nobody is told, when it is hidden already.
    void close();

    [[nodiscard]] const Panel& panel() const { return *panel_; }

private:
    void installContent();
    void observeScreens();
    void watchClicksElsewhere();
    void screensChanged();
    void activate(const OverflowItem& item);
    void openOriginalMenu(const OverflowItem& item);

    // False, with nothing changed, when the button has no place on a screen.
    bool position(const StatusButton& relativeTo);

    MainQueue& mainQueue_;
    Screens& screens_;
    GlobalClicks& globalClicks_;

    std::unique_ptr<Panel> panel_;
    std::shared_ptr<OverflowStore> store_;
    std::weak_ptr<StatusButton> anchorButton_;
    // Present only while the panel is shown.
    SubscriptionPtr globalMonitor_;
    SubscriptionPtr screenObserver_;
    Lifetime lifetime_;
};

} // namespace pelistra
