#include "platform/linux/views/StackElements.h"

#include "platform/linux/views/EnteringElement.h"
#include "platform/linux/views/Scene.h"
#include "ui/Walk.h"

#include <algorithm>
#include <numeric>
#include <type_traits>
#include <utility>

namespace pelistra::desktop {

namespace {

// A child's Entering may lie inside its key.
EnteringElement* enteringIn(Element& element) {
    if (auto* entering = dynamic_cast<EnteringElement*>(&element)) {
        return entering;
    }
    EnteringElement* found = nullptr;
    if (element.view().as<ui::Identified>() != nullptr) {
        element.forEachChild([&found](Element& child) { found = enteringIn(child); });
    }
    return found;
}

double along(const QSizeF& size, Axis axis) {
    return axis == Axis::Horizontal ? size.width() : size.height();
}

double across(const QSizeF& size, Axis axis) {
    return axis == Axis::Horizontal ? size.height() : size.width();
}

Proposal offer(Axis axis, std::optional<double> lengthAlong, std::optional<double> lengthAcross) {
    return axis == Axis::Horizontal ? Proposal{.width = lengthAlong, .height = lengthAcross}
                                    : Proposal{.width = lengthAcross, .height = lengthAlong};
}

// Where a child of that length begins, for an alignment counted from 0 (begin) to 2 (end).
double alignedPlace(double length, double available, int alignment) {
    return (available - length) * alignment / 2;
}

} // namespace

void ChildList::update(Scene& scene, Element& owner, const std::vector<ui::View>& views,
                       const Surroundings& surroundings) {
    std::vector<ui::View> before;
    before.reserve(present_.size());
    for (const auto& child : present_) {
        before.push_back(child->view());
    }
    const auto origins = ui::continuedFrom(before, views);
    std::vector<ElementPtr> children;
    children.reserve(views.size());
    bool hasChanged = present_.size() != views.size();
    for (std::size_t place = 0; place < views.size(); ++place) {
        const auto origin = origins[place];
        const bool isKept = origin && canContinue(before[*origin], views[place]);
        hasChanged = hasChanged || !isKept || *origin != place;
        children.push_back(isKept ? std::move(present_[*origin])
                                  : makeElement(views[place], scene, &owner));
    }
    std::swap(present_, children);
    keepLeaving(scene, children);
    if (hasChanged) {
        scene.structureChanged();
        owner.sizeChanged();
    }
    for (std::size_t place = 0; place < views.size(); ++place) {
        present_[place]->update(views[place], surroundings);
    }
}

void ChildList::keepLeaving(Scene& scene, std::vector<ElementPtr>& before) {
    if (leavingMotion_ && leavingMotion_->hasEnded()) {
        leaving_.clear();
    }
    for (auto& gone : before) {
        if (!gone) {
            continue;
        }
        gone->willLeave();
        EnteringElement* entering = enteringIn(*gone);
        if (scene.currentMotion() && entering != nullptr) {
            entering->leave(scene.currentMotion());
            leavingMotion_ = scene.currentMotion();
            leaving_.push_back(std::move(gone));
        }
    }
}

void ChildList::paint(QPainter& painter, const PaintState& state) {
    if (leavingMotion_ && leavingMotion_->hasEnded()) {
        leaving_.clear();
        leavingMotion_.reset();
    }
    for (const auto& child : leaving_) {
        child->paint(painter, state);
    }
    for (const auto& child : present_) {
        child->paint(painter, state);
    }
}

void ChildList::forEach(const std::function<void(Element&)>& call) const {
    for (const auto& child : present_) {
        call(*child);
    }
}

template <class Kind, Axis axis>
void StackElement<Kind, axis>::changed(const Kind* before, const Surroundings& surroundings) {
    const Kind& now = this->node();
    if (before != nullptr &&
        (before->alignment != now.alignment || before->spacing != now.spacing)) {
        this->sizeChanged();
    }
    Surroundings inside = surroundings;
    inside.stack = axis;
    inside.isFormRow = false;
    children_.update(this->scene(), *this, now.children, inside);
}

template <class Kind, Axis axis>
std::vector<QSizeF> StackElement<Kind, axis>::sizes(const Proposal& proposal) const {
    const auto& children = children_.present();
    const auto whole = axis == Axis::Horizontal ? proposal.width : proposal.height;
    const auto lengthAcross = axis == Axis::Horizontal ? proposal.height : proposal.width;
    std::vector<QSizeF> sizes(children.size());
    if (!whole || children.empty()) {
        for (std::size_t place = 0; place < children.size(); ++place) {
            sizes[place] = children[place]->measure(offer(axis, std::nullopt, lengthAcross));
        }
        return sizes;
    }
    // The less a child can give way, the earlier it is asked.
    std::vector<double> give(children.size());
    for (std::size_t place = 0; place < children.size(); ++place) {
        const auto most = children[place]->measure(offer(axis, ui::infinity, lengthAcross));
        const auto least = children[place]->measure(offer(axis, 0, lengthAcross));
        give[place] = along(most, axis) - along(least, axis);
    }
    std::vector<std::size_t> order(children.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {},
                      [&give](std::size_t place) { return std::pair(give[place], place); });
    double left = *whole - (this->node().spacing * static_cast<double>(children.size() - 1));
    std::size_t waiting = children.size();
    for (const std::size_t place : order) {
        const double share = std::max(0.0, left / static_cast<double>(waiting--));
        sizes[place] = children[place]->measure(offer(axis, share, lengthAcross));
        left -= along(sizes[place], axis);
    }
    return sizes;
}

template <class Kind, Axis axis>
QSizeF StackElement<Kind, axis>::sizeThatFits(const Proposal& proposal) {
    const auto all = sizes(proposal);
    double length = all.empty() ? 0 : this->node().spacing * static_cast<double>(all.size() - 1);
    double width = 0;
    for (const QSizeF& size : all) {
        length += along(size, axis);
        width = std::max(width, across(size, axis));
    }
    return axis == Axis::Horizontal ? QSizeF(length, width) : QSizeF(width, length);
}

template <class Kind, Axis axis>
void StackElement<Kind, axis>::arrange() {
    const QRectF& area = this->frame();
    const auto all = sizes({.width = area.width(), .height = area.height()});
    const auto& children = children_.present();
    double at = axis == Axis::Horizontal ? area.x() : area.y();
    for (std::size_t place = 0; place < children.size(); ++place) {
        const QSizeF& size = all[place];
        const double shift = alignedPlace(across(size, axis), across(area.size(), axis),
                                          static_cast<int>(this->node().alignment));
        const Scene& scene = this->scene();
        const QPointF origin = axis == Axis::Horizontal
                                   ? QPointF(scene.snapped(at), scene.snapped(area.y() + shift))
                                   : QPointF(scene.snapped(area.x() + shift), scene.snapped(at));
        children[place]->place(QRectF(origin, size));
        at += along(size, axis) + this->node().spacing;
    }
}

template class StackElement<ui::HStack, Axis::Horizontal>;
template class StackElement<ui::VStack, Axis::Vertical>;

void ZStackElement::changed(const ui::ZStack* /*before*/, const Surroundings& surroundings) {
    Surroundings inside = surroundings;
    inside.isFormRow = false;
    children_.update(scene(), *this, node().children, inside);
}

QSizeF ZStackElement::sizeThatFits(const Proposal& proposal) {
    QSizeF size(0, 0);
    for (const auto& child : children_.present()) {
        size = size.expandedTo(child->measure(proposal));
    }
    return size;
}

void ZStackElement::arrange() {
    for (const auto& child : children_.present()) {
        const QSizeF size = child->measure({.width = frame().width(), .height = frame().height()});
        child->place(
            QRectF(QPointF(scene().snapped(frame().x() + ((frame().width() - size.width()) / 2)),
                           scene().snapped(frame().y() + ((frame().height() - size.height()) / 2))),
                   size));
    }
}

} // namespace pelistra::desktop
