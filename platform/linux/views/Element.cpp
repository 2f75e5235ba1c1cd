#include "platform/linux/views/Element.h"

#include "platform/linux/views/Scene.h"
#include "ui/Nodes.h"

#include <QWidget>

namespace pelistra::desktop {

QSizeF Element::measure(const Proposal& proposal) {
    for (const auto& known : measured_) {
        if (known && known->proposal == proposal) {
            return known->size;
        }
    }
    const QSizeF size = sizeThatFits(proposal);
    measured_.at(nextMeasured_) = Measured{.proposal = proposal, .size = size};
    nextMeasured_ = (nextMeasured_ + 1) % measured_.size();
    return size;
}

void Element::place(const QRectF& frame) {
    if (frame != frame_ || !isPlaced_) {
        const QRectF before = drawnArea();
        if (isPlaced_ && joinMotion()) {
            frameBefore_ = frame_;
        }
        frame_ = frame;
        if (draws()) {
            if (isPlaced_) {
                invalidate(before);
            }
            invalidate(drawnArea());
        }
        isPlaced_ = true;
    }
    arrange();
}

void Element::invalidate(const QRectF& area) {
    if (parent_ != nullptr) {
        parent_->invalidate(area);
    } else {
        scene_.invalidate(area);
    }
}

void Element::willLeave() {
    if (draws() && isPlaced_) {
        invalidate(drawnArea());
    }
    forEachChild([](Element& child) { child.willLeave(); });
}

void Element::sizeChanged() {
    for (Element* each = this; each != nullptr; each = each->parent_) {
        each->measured_ = {};
    }
    scene_.requestLayout();
}

void Element::appearanceChanged() {
    if (isPlaced_) {
        invalidate(drawnArea());
    }
}

QRectF Element::drawnArea() const {
    const double margin = drawingMargin();
    return shownFrame().adjusted(-margin, -margin, margin, margin);
}

QRectF Element::shownFrame() const {
    if (!motion_ || motion_->hasEnded() || frameBefore_.isNull()) {
        return frame_;
    }
    const double part = motion_->progress();
    const auto between = [part](double from, double to) { return from + ((to - from) * part); };
    return {between(frameBefore_.x(), frame_.x()), between(frameBefore_.y(), frame_.y()),
            between(frameBefore_.width(), frame_.width()),
            between(frameBefore_.height(), frame_.height())};
}

double Element::motionProgress() const {
    return motion_ && !motion_->hasEnded() ? motion_->progress() : 1;
}

bool Element::joinMotion() {
    const auto current = scene_.currentMotion();
    if (!current) {
        motion_.reset();
        return false;
    }
    if (motion_ != current) {
        frameBefore_ = QRectF();
        motion_ = current;
    }
    return true;
}

void Element::updateChild(ElementPtr& child, const ui::View& view,
                          const Surroundings& surroundings) {
    if (!child || !canContinue(child->view(), view)) {
        if (child) {
            child->willLeave();
        }
        child = makeElement(view, scene_, this);
        scene_.structureChanged();
        sizeChanged();
    }
    child->update(view, surroundings);
}

void hideWidgets(Element& element) {
    if (QWidget* widget = element.widget()) {
        widget->hide();
    }
    element.forEachChild([](Element& child) { hideWidgets(child); });
}

bool canContinue(const ui::View& before, const ui::View& after) {
    if (before.node().kind.index() != after.node().kind.index()) {
        return false;
    }
    const auto* key = before.as<ui::Identified>();
    return key == nullptr || key->key == after.as<ui::Identified>()->key;
}

} // namespace pelistra::desktop
