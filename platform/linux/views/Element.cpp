#include "platform/linux/views/Element.h"

#include "platform/linux/views/Scene.h"

#include <algorithm>
#include <utility>

#include <QWidget>

namespace pelistra::linux {

void ElementList::update(const std::vector<ui::Placed>& placed, Scene& scene, Element* owner,
                         const Surroundings& surroundings) {
    const auto keyOf = [](const auto& each) { return each->key(); };
    const bool isSame = std::ranges::equal(present_, placed, {}, keyOf, &ui::Placed::key);
    auto now = ui::continued(
        present_, placed, [&](const ui::Placed& each) { return makeElement(each, scene, owner); });
    std::swap(present_, now);
    keepLeaving(now, scene);
    if (!isSame) {
        scene.structureChanged();
    }
    for (std::size_t place = 0; place < placed.size(); ++place) {
        present_[place]->update(placed[place], surroundings);
    }
}

void ElementList::keepLeaving(std::vector<ElementPtr>& before, const Scene& scene) {
    const auto motion = scene.currentMotion();
    for (std::size_t place = 0; place < before.size(); ++place) {
        ElementPtr& gone = before[place];
        if (!gone) {
            continue;
        }
        gone->willLeave();
        if (motion && gone->leave(motion)) {
            leavingMotion_ = motion;
            leaving_.push_back({.element = std::move(gone), .place = place});
        }
    }
}

void ElementList::paint(QPainter& painter, const PaintState& state) {
    if (leavingMotion_ && leavingMotion_->hasEnded()) {
        leaving_.clear();
        leavingMotion_.reset();
    }
    for (std::size_t place = 0; place < present_.size(); ++place) {
        for (const Leaving& each : leaving_) {
            if (each.place == place) {
                each.element->paint(painter, state);
            }
        }
        present_[place]->paint(painter, state);
    }
    for (const Leaving& each : leaving_) {
        if (each.place >= present_.size()) {
            each.element->paint(painter, state);
        }
    }
}

void ElementList::forEach(const std::function<void(Element&)>& call) const {
    for (const auto& element : present_) {
        call(*element);
    }
}

void Element::update(const ui::Placed& placed, const Surroundings& surroundings) {
    const bool isFirst = !isPlaced_;
    const ui::View before = std::exchange(view_, placed.view);
    key_ = placed.key;
    place(qRect(placed.frame));
    changed(isFirst ? nullptr : &before, placed, surroundings);
    updateChildren(placed, surroundings);
}

void Element::place(const QRectF& frame) {
    if (frame == frame_ && isPlaced_) {
        return;
    }
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

void Element::invalidate(const QRectF& area) const {
    if (parent_ != nullptr) {
        parent_->invalidateInside(area);
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

void hideWidgets(Element& element) {
    if (QWidget* widget = element.widget()) {
        widget->hide();
    }
    element.forEachChild([](Element& child) { hideWidgets(child); });
}

QRectF qRect(const ui::Area& area) {
    return {area.minX(), area.minY(), area.width(), area.height()};
}

} // namespace pelistra::linux
