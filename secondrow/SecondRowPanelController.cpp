#include "secondrow/SecondRowPanelController.h"

#include "overflow/OverflowStore.h"
#include "platform/GlobalClicks.h"
#include "platform/MainQueue.h"
#include "platform/Panel.h"
#include "platform/Platform.h"
#include "platform/Screens.h"
#include "platform/StatusBar.h"
#include "secondrow/SecondRowView.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace pelistra {

namespace {

constexpr Size initialSize = {.width = 420, .height = SecondRowView::preferredHeight};

// What the panel keeps free at the sides, and at the top and bottom, of a screen's visible frame.
constexpr double sideInset = 8;
constexpr double verticalInset = 4;
// Between the button's lower edge and the panel's upper one.
constexpr double distanceBelowButton = 6;

// The width besides the icons, and the bounds of the whole.
constexpr double extraWidth = 128;
constexpr double smallestWidth = 280;
constexpr double largestWidth = 920;

std::optional<Screen> screenWith(const ScreenPoint& point, const Screens& screens) {
    const auto all = screens.screens();
    const auto found = std::ranges::find_if(
        all, [&point](const Screen& screen) { return screen.frame.contains(point); });
    return found != all.end() ? *found : screens.main();
}

// The width for a number of icons; what the screen has room for wins over the smallest width.
double panelWidth(std::size_t items, double available) {
    const double desired = SecondRowView::itemWidth * static_cast<double>(items) + extraWidth;
    const double lower = std::max(desired, smallestWidth);
    const double upper = std::min(available, largestWidth);
    return std::min(upper, lower);
}

PanelConfiguration panelConfiguration() {
    return {.contentSize = initialSize,
            .styleMask = window_style::nonactivatingPanel,
            .title = "Pelistra 第二行",
            .accessibilityLabel = "Pelistra 第二行溢出栏",
            .level = window_level::statusBar,
            .isFloatingPanel = true,
            // The user works elsewhere while the row is open.
            .hidesOnDeactivate = false,
            .collectionBehavior =
                collection_behavior::canJoinAllSpaces | collection_behavior::transient |
                collection_behavior::ignoresCycle | collection_behavior::fullScreenAuxiliary,
            // The view draws its own rounded card.
            .isOpaque = false,
            .background = PanelBackground::Clear,
            .hasShadow = true,
            .animationBehavior = AnimationBehavior::UtilityWindow,
            .isReleasedWhenClosed = false};
}

} // namespace

SecondRowPanelController::SecondRowPanelController(const Platform& platform,
                                                   std::shared_ptr<OverflowStore> store)
    : mainQueue_(platform.mainQueue), screens_(platform.screens),
      globalClicks_(platform.globalClicks), panel_(platform.panels.panel(panelConfiguration())),
      store_(std::move(store)) {
    installContent();
    panel_->orderOut();
    observeScreens();
}

SecondRowPanelController::~SecondRowPanelController() = default;

void SecondRowPanelController::installContent() {
    panel_->setContent(std::make_shared<SecondRowView>(
        store_, lifetime_.guard([this](const OverflowItem& item) { activate(item); }),
        lifetime_.guard([this](const OverflowItem& item) { openOriginalMenu(item); }),
        lifetime_.guard([this] {
            if (const auto arrange = onArrange) {
                arrange();
            }
        })));
}

void SecondRowPanelController::activate(const OverflowItem& item) {
    if (store_->openApplication(item)) {
        close();
    }
}

void SecondRowPanelController::openOriginalMenu(const OverflowItem& item) {
    // Guarded, because whoever is told of the closing may let go of this controller.
    auto request = lifetime_.guard([this, &item] {
        if (const auto originalMenu = onOriginalMenu) {
            originalMenu(item);
        }
    });
    close();
    request();
}

void SecondRowPanelController::observeScreens() {
    screenObserver_ = screens_.observeParameterChanges(lifetime_.guard(
        [this] { mainQueue_.async(lifetime_.guard([this] { screensChanged(); })); }));
}

void SecondRowPanelController::screensChanged() {
    if (!panel_->isVisible()) {
        return;
    }
    // Where there is no place for it now, the panel stays where it was.
    if (const auto button = anchorButton_.lock()) {
        position(*button);
    }
}

void SecondRowPanelController::show(const std::shared_ptr<StatusButton>& relativeTo) {
    anchorButton_ = relativeTo;
    if (relativeTo == nullptr || !position(*relativeTo)) {
        return;
    }
    panel_->orderFrontRegardless();
    if (const auto changed = onVisibilityChanged) {
        changed(true);
    }
    watchClicksElsewhere();
}

void SecondRowPanelController::watchClicksElsewhere() {
    globalMonitor_.reset();
    globalMonitor_ = globalClicks_.addMonitor(
        maskOf(EventType::LeftMouseDown) | maskOf(EventType::RightMouseDown),
        lifetime_.guard([this] { mainQueue_.async(lifetime_.guard([this] { close(); })); }));
}

void SecondRowPanelController::close() {
    if (!panel_->isVisible()) {
        return;
    }
    globalMonitor_.reset();
    panel_->orderOut();
    if (const auto changed = onVisibilityChanged) {
        changed(false);
    }
}

bool SecondRowPanelController::position(const StatusButton& relativeTo) {
    const auto anchor = relativeTo.frameOnScreen();
    if (!anchor || !(anchor->width() > 0) || !(anchor->height() > 0)) {
        return false;
    }
    const auto screen = screenWith({.x = anchor->midX(), .y = anchor->midY()}, screens_);
    if (!screen) {
        return false;
    }
    const double left = screen->visibleFrame.minX() + sideInset;
    const double right = screen->visibleFrame.maxX() - sideInset;
    const double bottom = screen->visibleFrame.minY() + verticalInset;

    const double width = panelWidth(store_->items.get().size(), std::max(right - left, 0.0));
    panel_->setContentSize({.width = width, .height = SecondRowView::preferredHeight});

    // The right edge is clamped last, so that it wins.
    const double x = std::min(std::max(anchor->midX() - width * 0.5, left), right - width);
    const double y =
        std::max(anchor->minY() - SecondRowView::preferredHeight - distanceBelowButton, bottom);
    panel_->setFrameOrigin({.x = std::round(x), .y = std::round(y)});
    return true;
}

} // namespace pelistra
