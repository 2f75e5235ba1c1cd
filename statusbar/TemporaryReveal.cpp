// The part of the status-bar controller that brings a single hidden item back on screen.

#include "overflow/OverflowItem.h"
#include "overflow/OverflowStore.h"
#include "platform/Screens.h"
#include "secondrow/SecondRowPanelController.h"
#include "statusbar/StatusBarController.h"
#include "statusbar/StatusImages.h"
#include "statusbar/StatusTexts.h"

#include <optional>
#include <utility>

namespace pelistra {
namespace {

constexpr std::string_view revealedToolTip = "点击：重新折叠临时显示的图标";

constexpr const char* notCollapsedMessage = "请先折叠隐藏区，再从第二行尝试原托盘菜单。";
constexpr const char* unknownPlaceMessage = "无法读取该图标的当前位置。";
constexpr const char* noReactionMessage = "目标图标已显示，但没有响应定向点击。";
constexpr const char* notVisibleMessage = "该图标完全展开后仍位于刘海或可见区域之外。";

// Time for the menu bar to lay out the changed divider.
constexpr Seconds settlingTime{0.22};

} // namespace

void StatusBarController::temporarilyRevealAndActivate(OverflowItem item) {
    if (!collapsed_) {
        overflowStore_->message.set(notCollapsedMessage);
        return;
    }
    cancelTemporaryReveal(true);
    overflowStore_->message.set(std::nullopt);

    const auto currentFrame = overflowStore_->currentFrame(item);
    const auto screen =
        currentFrame ? revealGeometry_.screen(item.lastKnownFrame.midX()) : std::nullopt;
    if (!screen) {
        reportTemporaryRevealFailure(unknownPlaceMessage);
        return;
    }
    isTemporarilyRevealing_ = true;
    temporaryRevealGeneration_.advance();
    if (const auto button = controlItem_->button()) {
        button->setImage(expandedArrowImage(platform_.images));
        button->setToolTip(revealedToolTip);
    }
    dividerItem_->setLength(RevealGeometry::temporaryDividerLength(
        *currentFrame, item.lastKnownFrame, *screen, dividerItem_->length()));
    checkLater(std::move(item), temporaryRevealGeneration_.number(), true);
}

void StatusBarController::checkLater(OverflowItem item, Generation::Number generation,
                                     bool allowFullReveal) {
    platform_.mainQueue.asyncAfter(
        settlingTime, lifetime_.guard([this, item = std::move(item), generation, allowFullReveal] {
            activateRevealedItem(item, generation, allowFullReveal);
        }));
}

void StatusBarController::activateRevealedItem(const OverflowItem& item,
                                               Generation::Number generation,
                                               bool allowFullReveal) {
    if (temporaryRevealGeneration_.number() != generation || !isTemporarilyRevealing_) {
        return;
    }
    const auto frame = overflowStore_->currentFrame(item);
    if (frame && revealGeometry_.isSafelyVisible(*frame)) {
        if (overflowStore_->activateOriginalMenu(item)) {
            logger_.info("Temporarily revealed and activated window " + std::to_string(item.id));
        } else {
            failTemporaryReveal(noReactionMessage);
        }
    } else if (allowFullReveal && dividerItem_->length() > Lengths::expanded) {
        dividerItem_->setLength(Lengths::expanded);
        checkLater(item, generation, false);
    } else {
        failTemporaryReveal(notVisibleMessage);
    }
}

void StatusBarController::cancelTemporaryReveal(bool restoreCollapsedWidth) {
    overtakeTemporaryReveal();
    setControlToolTip(status_texts::controlToolTip);
    if (restoreCollapsedWidth && collapsed_) {
        dividerItem_->setLength(Lengths::collapsed(platform_.screens));
        updateControlImage(false);
    }
}

// From here on, no step of a reveal that is under way acts any more.
void StatusBarController::overtakeTemporaryReveal() {
    temporaryRevealGeneration_.advance();
    isTemporarilyRevealing_ = false;
}

void StatusBarController::failTemporaryReveal(std::string message) {
    cancelTemporaryReveal(true);
    reportTemporaryRevealFailure(std::move(message));
}

// The second row opens again, so that the message is seen where the user asked.
void StatusBarController::reportTemporaryRevealFailure(std::string message) {
    overflowStore_->message.set(std::move(message));
    if (const std::weak_ptr<StatusButton> control = controlItem_->button(); !control.expired()) {
        platform_.mainQueue.async(lifetime_.guard([this, control] {
            if (const auto button = control.lock()) {
                secondRowPanel().show(button);
            }
        }));
    }
}

} // namespace pelistra
