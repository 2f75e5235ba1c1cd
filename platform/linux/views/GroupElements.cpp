#include "platform/linux/views/GroupElements.h"

#include "platform/linux/views/Scene.h"

#include <algorithm>

#include <QPainter>

namespace pelistra::linux {

void AnimatedElement::changed(const ui::View* before, const ui::Placed& /*now*/,
                              const Surroundings& /*surroundings*/) {
    isChange_ = before != nullptr && before->as<ui::Animated>()->value != node().value;
}

void AnimatedElement::updateChildren(const ui::Placed& placed, const Surroundings& surroundings) {
    if (isChange_) {
        scene().inMotion(scene().begin(node().animation),
                         [&] { Element::updateChildren(placed, surroundings); });
    } else {
        Element::updateChildren(placed, surroundings);
    }
}

void EnteringElement::changed(const ui::View* before, const ui::Placed& /*now*/,
                              const Surroundings& /*surroundings*/) {
    if (before == nullptr) {
        motion_ = scene().currentMotion();
    }
}

bool EnteringElement::leave(const std::shared_ptr<Motion>& motion) {
    motion_ = motion;
    isLeaving_ = true;
    hideWidgets(*this);
    return true;
}

void EnteringElement::paint(QPainter& painter, const PaintState& state) {
    if (!motion_ || (motion_->hasEnded() && !isLeaving_)) {
        motion_.reset();
        Element::paint(painter, state);
        return;
    }
    const double progress = motion_->progress();
    const double presence = isLeaving_ ? 1 - progress : progress;
    const double scale = node().transition.scale + ((1 - node().transition.scale) * presence);
    painter.save();
    painter.setOpacity(painter.opacity() * std::clamp(presence, 0.0, 1.0));
    painter.translate(frame().center());
    painter.scale(scale, scale);
    painter.translate(-frame().center());
    Element::paint(painter, state);
    painter.restore();
}

} // namespace pelistra::linux
