#pragma once

#include "base/Geometry.h"
#include "base/Lifetime.h"
#include "base/Logger.h"
#include "base/Subscription.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "platform/StatusBar.h"
#include "statusbar/Generation.h"
#include "statusbar/RevealGeometry.h"
#include "statusbar/SectionLengths.h"
#include "statusbar/StatusItemWindows.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace pelistra {

class OverflowStore;
class SecondRowPanelController;
struct OverflowItem;

// Puts the arrow and the divider into the menu bar, and hides what the user has put left of the
// divider by growing the divider until the menu bar pushes it off the screen. Main thread only.
class StatusBarController {
public:
    using Lengths = SectionLengths;

    // Puts both items into the menu bar, expanded. On the next turn of the main queue it checks
    // their order and obeys the process's switches. `showSettings` is called when the user asks for
    // the settings window.
    StatusBarController(const Platform& platform, std::function<void()> showSettings);
    StatusBarController(const StatusBarController&) = delete;
    StatusBarController& operator=(const StatusBarController&) = delete;
    // Takes both items out of the menu bar.
    ~StatusBarController();

    // What a click on the arrow does, by the application's current event; nothing without one.
    void controlPressed();

    // Fits the collapsed length to the screens that are there now; nothing while expanded.
    void screenParametersChanged();

private:
    struct ItemFrames {
        Rect control;
        Rect divider;

        [[nodiscard]] bool inOrder() const { return divider.minX() < control.minX(); }
    };

    [[nodiscard]] std::unique_ptr<StatusItem> makeItem(std::string_view autosaveName);
    void configureControlItem();
    void configureDividerItem();
    void startUpCheck();
    void verifyOrder();
    void runLayoutVerification();
    void reportLayout(ScreenPoint pointerBefore);

    [[nodiscard]] std::optional<Rect> statusWindowFrame(std::string_view named) const;
    [[nodiscard]] std::optional<ItemFrames> itemFrames() const;

    void toggleSection();
    // Both changes apply at once; `animated` is for callers to say what they would like.
    void hideSection(bool animated);
    void showSection(bool animated);
    void startRefreshTimer();
    void refreshTick();

    void updateControlImage(bool panelVisible);
    void setControlToolTip(std::string_view text);

    // Made by the first call.
    [[nodiscard]] SecondRowPanelController& secondRowPanel();
    void toggleSecondRow(const std::shared_ptr<StatusButton>& relativeTo);

    // Shortens the divider until that one item is back on screen, and clicks it. The next click on
    // the arrow ends that.
    void temporarilyRevealAndActivate(OverflowItem item);
    void checkLater(OverflowItem item, Generation::Number generation, bool allowFullReveal);
    void activateRevealedItem(const OverflowItem& item, Generation::Number generation,
                              bool allowFullReveal);
    void cancelTemporaryReveal(bool restoreCollapsedWidth);
    void overtakeTemporaryReveal();
    void failTemporaryReveal(std::string message);
    void reportTemporaryRevealFailure(std::string message);

    Platform platform_;
    Logger logger_;
    std::unique_ptr<StatusItem> controlItem_;
    std::unique_ptr<StatusItem> dividerItem_;
    std::function<void()> showSettings_;
    std::shared_ptr<OverflowStore> overflowStore_;
    std::unique_ptr<SecondRowPanelController> secondRowPanel_;
    bool collapsed_ = false;
    bool toggling_ = false;
    SubscriptionPtr refreshTimer_;
    Generation temporaryRevealGeneration_;
    bool isTemporarilyRevealing_ = false;
    StatusItemWindows itemWindows_;
    RevealGeometry revealGeometry_;
    SubscriptionPtr screenObserver_;
    Lifetime lifetime_;
};

} // namespace pelistra
