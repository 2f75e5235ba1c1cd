#include "statusbar/StatusBarController.h"

#include "overflow/OverflowServices.h"
#include "overflow/OverflowStore.h"
#include "overflow/PrivateMenuBarBridge.h"
#include "platform/Panel.h"
#include "platform/Screens.h"
#include "platform/UserDefaults.h"
#include "platform/WindowList.h"
#include "secondrow/SecondRowPanelController.h"
#include "statusbar/NumberText.h"
#include "statusbar/StatusImages.h"
#include "statusbar/StatusItemNames.h"
#include "statusbar/StatusTexts.h"

#include <string>
#include <utility>

namespace pelistra {
namespace {

constexpr std::string_view dividerToolTip = "按住 Command 拖动图标：放到此线左侧会被 Pelistra 折叠";

constexpr Seconds toggleLatchTime{0.25};
constexpr Seconds refreshInterval{2.0};
// Time for the menu bar to lay out the grown divider.
constexpr Seconds measurementDelay{0.4};

// The user's own arrangement wins over the first-run position; visibility is set at every launch,
// so that an item once dragged out of the menu bar comes back.
void installInitialPositionIfNeeded(double position, std::string_view name,
                                    UserDefaults& defaults) {
    const auto positionKey = "NSStatusItem Preferred Position " + std::string(name);
    if (!defaults.hasObject(positionKey)) {
        defaults.setNumber(position, positionKey);
    }
    defaults.setBool(true, "NSStatusItem Visible " + std::string(name));
}

std::shared_ptr<OverflowStore> makeOverflowStore(const Platform& platform) {
    const auto services = OverflowServices::of(platform);
    return std::make_shared<OverflowStore>(PrivateMenuBarBridge::shared(services), services);
}

} // namespace

StatusBarController::StatusBarController(const Platform& platform,
                                         std::function<void()> showSettings)
    : platform_(platform), logger_(platform.log, "status-bar"),
      showSettings_(std::move(showSettings)), overflowStore_(makeOverflowStore(platform)),
      itemWindows_(platform.windowList, platform.application), revealGeometry_(platform.screens) {
    // The menu bar looks the positions up when the items come, so they are written first; and it
    // puts a new item left of the one before, so the control comes first.
    installInitialPositionIfNeeded(0, status_item_names::control, platform_.defaults);
    installInitialPositionIfNeeded(1, status_item_names::divider, platform_.defaults);
    controlItem_ = makeItem(status_item_names::control);
    dividerItem_ = makeItem(status_item_names::divider);

    controlItem_->setVisible(true);
    dividerItem_->setVisible(true);
    configureControlItem();
    configureDividerItem();
    showSection(false);

    screenObserver_ = platform_.screens.observeParameterChanges(
        lifetime_.guard([this] { screenParametersChanged(); }));
    // The menu bar lays out the new items' windows first.
    platform_.mainQueue.async(lifetime_.guard([this] { startUpCheck(); }));
}

StatusBarController::~StatusBarController() = default;

std::unique_ptr<StatusItem> StatusBarController::makeItem(std::string_view autosaveName) {
    auto item = platform_.statusBar.statusItem(0);
    item->setAutosaveName(autosaveName);
    return item;
}

void StatusBarController::configureControlItem() {
    controlItem_->setLength(StatusItem::squareLength);
    const auto button = controlItem_->button();
    if (button == nullptr) {
        return;
    }
    button->setImage(expandedArrowImage(platform_.images));
    button->setAction(lifetime_.guard([this] { controlPressed(); }));
    button->sendActionOn(maskOf(EventType::LeftMouseUp) | maskOf(EventType::RightMouseUp));
    button->setToolTip(status_texts::controlToolTip);
}

void StatusBarController::configureDividerItem() {
    dividerItem_->setLength(Lengths::expanded);
    const auto button = dividerItem_->button();
    if (button == nullptr) {
        return;
    }
    button->setImage(dividerImage(platform_.images));
    button->setAction({});
    button->setToolTip(dividerToolTip);
}

void StatusBarController::startUpCheck() {
    verifyOrder();
    if (hasArgument(platform_.application, "--start-collapsed")) {
        hideSection(false);
    } else if (hasArgument(platform_.application, "--verify-section-layout")) {
        runLayoutVerification();
    }
}

void StatusBarController::verifyOrder() {
    const auto frames = itemFrames();
    if (!frames) {
        logger_.error("Status item windows are not ready");
        return;
    }
    const auto framesAgain = itemFrames();
    const bool valid = framesAgain && framesAgain->inOrder();
    logger_.info("Status order dividerX=" + fixedText(frames->divider.minX()) + " controlX=" +
                 fixedText(frames->control.minX()) + " valid=" + std::string(booleanText(valid)));
    if (!frames->inOrder()) {
        logger_.error("Pelistra status items have an invalid saved order");
    }
}

void StatusBarController::runLayoutVerification() {
    const auto frames = itemFrames();
    if (!frames || !frames->inOrder()) {
        return;
    }
    const ScreenPoint pointerBefore = platform_.application.mouseLocation();
    hideSection(false);
    platform_.mainQueue.asyncAfter(
        measurementDelay, lifetime_.guard([this, pointerBefore] { reportLayout(pointerBefore); }));
}

// Shows that the divider really took its length, and that collapsing left the pointer alone.
void StatusBarController::reportLayout(ScreenPoint pointerBefore) {
    const ScreenPoint pointerNow = platform_.application.mouseLocation();
    const auto button = dividerItem_->button();
    const auto window = button == nullptr ? std::nullopt : button->windowFrame();
    const double dividerWidth = window ? window->width() : -1;
    logger_.info("Verification collapsed dividerWidth=" + shortestDecimalText(dividerWidth) +
                 " pointerUnchanged=" + std::string(booleanText(pointerNow == pointerBefore)));
    showSection(false);
}

std::optional<Rect> StatusBarController::statusWindowFrame(std::string_view named) const {
    return itemWindows_.statusWindowFrame(named);
}

std::optional<StatusBarController::ItemFrames> StatusBarController::itemFrames() const {
    const auto control = statusWindowFrame(status_item_names::control);
    const auto divider = statusWindowFrame(status_item_names::divider);
    if (!control || !divider) {
        return std::nullopt;
    }
    return ItemFrames{.control = *control, .divider = *divider};
}

void StatusBarController::controlPressed() {
    const auto event = platform_.application.currentEvent();
    if (!event) {
        return;
    }
    if (event->type == EventType::RightMouseUp) {
        showSettings_();
    } else if ((event->modifierFlags & modifierOption) != 0) {
        showSection(true);
    } else {
        toggleSection();
    }
}

void StatusBarController::toggleSection() {
    if (toggling_) {
        return;
    }
    if (isTemporarilyRevealing_) {
        cancelTemporaryReveal(true);
        return;
    }
    toggling_ = true;
    if (collapsed_) {
        const auto button = controlItem_->button();
        if (button == nullptr) {
            toggling_ = false;
            return;
        }
        toggleSecondRow(button);
    } else {
        hideSection(true);
    }
    platform_.mainQueue.asyncAfter(toggleLatchTime, lifetime_.guard([this] { toggling_ = false; }));
}

void StatusBarController::toggleSecondRow(const std::shared_ptr<StatusButton>& relativeTo) {
    if (const auto divider = statusWindowFrame(status_item_names::divider)) {
        overflowStore_->refreshWhileCollapsed(*divider);
    }
    if (secondRowPanel().panel().isVisible()) {
        secondRowPanel().close();
    } else {
        secondRowPanel().show(relativeTo);
    }
}

void StatusBarController::hideSection([[maybe_unused]] bool animated) {
    overtakeTemporaryReveal();
    setControlToolTip(status_texts::controlToolTip);
    const auto frames = itemFrames();
    if (!frames || !frames->inOrder()) {
        logger_.error("Refusing to collapse because divider is not left of control");
        showSection(animated);
        return;
    }
    // While the icons are still on screen.
    if (const auto divider = statusWindowFrame(status_item_names::divider)) {
        overflowStore_->snapshot(*divider);
    }
    collapsed_ = true;
    if (const auto button = dividerItem_->button()) {
        button->setImage(nullptr);
    }
    updateControlImage(false);
    dividerItem_->setLength(Lengths::collapsed(platform_.screens));
    startRefreshTimer();
    logger_.info("Collapsed divider to length " + fixedText(Lengths::collapsed(platform_.screens)));
}

void StatusBarController::showSection([[maybe_unused]] bool animated) {
    overtakeTemporaryReveal();
    setControlToolTip(status_texts::controlToolTip);
    if (collapsed_) {
        secondRowPanel().close();
    }
    refreshTimer_.reset();
    collapsed_ = false;
    if (const auto button = dividerItem_->button()) {
        button->setImage(dividerImage(platform_.images));
    }
    updateControlImage(false);
    dividerItem_->setLength(Lengths::expanded);
    logger_.info("Expanded hidden section");
}

void StatusBarController::startRefreshTimer() {
    refreshTimer_.reset();
    refreshTimer_ = platform_.mainQueue.repeatingTimer(refreshInterval, lifetime_.guard([this] {
        platform_.mainQueue.async(lifetime_.guard([this] { refreshTick(); }));
    }));
}

void StatusBarController::refreshTick() {
    if (!collapsed_) {
        return;
    }
    if (const auto divider = statusWindowFrame(status_item_names::divider)) {
        overflowStore_->refreshWhileCollapsed(*divider);
    }
}

void StatusBarController::screenParametersChanged() {
    if (!collapsed_) {
        return;
    }
    cancelTemporaryReveal(true);
    dividerItem_->setLength(Lengths::collapsed(platform_.screens));
}

void StatusBarController::updateControlImage(bool panelVisible) {
    if (const auto button = controlItem_->button()) {
        button->setImage(collapsed_ ? overflowArrowImage(platform_.images, panelVisible)
                                    : expandedArrowImage(platform_.images));
    }
}

void StatusBarController::setControlToolTip(std::string_view text) {
    if (const auto button = controlItem_->button()) {
        button->setToolTip(text);
    }
}

SecondRowPanelController& StatusBarController::secondRowPanel() {
    if (secondRowPanel_ == nullptr) {
        secondRowPanel_ = std::make_unique<SecondRowPanelController>(platform_, overflowStore_);
        secondRowPanel_->onArrange = lifetime_.guard([this] { showSection(true); });
        secondRowPanel_->onOriginalMenu = lifetime_.guard(
            [this](const OverflowItem& item) { temporarilyRevealAndActivate(item); });
        secondRowPanel_->onVisibilityChanged =
            lifetime_.guard([this](bool isVisible) { updateControlImage(isVisible); });
    }
    return *secondRowPanel_;
}

} // namespace pelistra
