#pragma once

#include "platform/Application.h"
#include "platform/linux/views/Element.h"
#include "ui/Nodes.h"

#include <memory>

namespace pelistra::linux {

// The area of a view of the core's own making.
class RepresentedElement final : public ElementOf<ui::Represented> {
public:
    RepresentedElement(Scene& scene, Element* parent);
    RepresentedElement(const RepresentedElement&) = delete;
    RepresentedElement& operator=(const RepresentedElement&) = delete;
    ~RepresentedElement() override;

    void paint(QPainter& /*painter*/, const PaintState& /*state*/) override {}

    // Whether a point of the content widget lies in its visible area.
    [[nodiscard]] bool contains(const QWidget& widget, const QPointF& point) const;
    // Asks its view for the event, and hands it over. True when the view has taken it.
    [[nodiscard]] bool offer(EventType type, const QWidget& widget, const QPointF& point);

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;

private:
    QWidget* host_ = nullptr;
    // Shared so that it lives until its event has been handled.
    std::shared_ptr<ui::EventView> eventView_;
};

} // namespace pelistra::linux
