#include "platform/linux/views/RepresentedElement.h"

#include "platform/linux/views/Scene.h"

#include <QWidget>

namespace pelistra::linux {

RepresentedElement::RepresentedElement(Scene& scene, Element* parent) : ElementOf(scene, parent) {
    scene.add(*this);
}

RepresentedElement::~RepresentedElement() {
    scene().remove(*this);
}

bool RepresentedElement::contains(const QWidget& widget, const QPointF& point) const {
    const QPointF inHost = host_->mapFrom(&widget, point);
    if (!frame().contains(inHost)) {
        return false;
    }
    // What is scrolled out of its viewport lies outside the host's parent.
    return host_ == &widget ||
           host_->parentWidget()->rect().contains(host_->mapToParent(inHost.toPoint()));
}

bool RepresentedElement::offer(EventType type, const QWidget& widget, const QPointF& point) {
    const QPointF inHost = host_->mapFrom(&widget, point);
    // The view's own coordinates grow upwards.
    const ScreenPoint own = {.x = inHost.x() - frame().x(), .y = frame().bottom() - inHost.y()};
    const auto view = eventView_;
    bool isTaken = false;
    scene().act(type, [type, view, own, &isTaken] {
        ui::EventView* taker = view->hitTest(own);
        isTaken = taker != nullptr;
        if (isTaken && type == EventType::RightMouseDown) {
            taker->rightMouseDown({.type = type});
        }
    });
    return isTaken;
}

void RepresentedElement::changed(const ui::View* before, const ui::Placed& /*now*/,
                                 const Surroundings& surroundings) {
    host_ = surroundings.host;
    if (before == nullptr || *before != view()) {
        eventView_ = node().value->makeView(scene().services().application);
    }
    node().value->updateView(*eventView_);
}

} // namespace pelistra::linux
