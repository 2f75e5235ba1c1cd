#include "platform/linux/views/EnteringElement.h"

#include "platform/linux/views/Scene.h"

#include <algorithm>
#include <utility>

#include <QImage>
#include <QPainter>

namespace pelistra::desktop {

void EnteringElement::changed(const ui::Entering* before, const Surroundings& surroundings) {
    if (before == nullptr) {
        motion_ = scene().currentMotion();
    }
    WrapperOf::changed(before, surroundings);
}

void EnteringElement::leave(std::shared_ptr<Motion> motion) {
    motion_ = std::move(motion);
    isLeaving_ = true;
    hideWidgets(*this);
}

void EnteringElement::paint(QPainter& painter, const PaintState& state) {
    if (!motion_ || (motion_->hasEnded() && !isLeaving_)) {
        motion_.reset();
        content().paint(painter, state);
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
    content().paint(painter, state);
    painter.restore();
}

} // namespace pelistra::desktop
