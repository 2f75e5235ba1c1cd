#pragma once

#include "platform/linux/views/Element.h"
#include "platform/linux/views/QtMeasures.h"
#include "platform/linux/views/ViewServices.h"
#include "ui/Nodes.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <QTimer>

namespace pelistra::linux {

class ButtonElement;
class ContentWidget;
class RepresentedElement;
class Scroller;

// The elements of one content, and what they ask of their widget. An update and the layout that
// follows from it happen in one go; what has to be drawn again is collected by the widget.
class Scene {
public:
    Scene(ContentWidget& widget, ViewServices services);
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    ~Scene();

    // Shows that body from now on.
    void update(const ui::View& body);
    // Shows the body of before in the whole widget.
    void layout();
    void paint(QPainter& painter, const QRectF& dirty);
    // What the body takes of what it is offered.
    [[nodiscard]] Size measure(const ui::Proposal& offered) const;
    // Everything is drawn, and measured, anew.
    void lookChanged();

    [[nodiscard]] const Look& look() const { return services_.look.get(); }
    // Device pixels per point.
    [[nodiscard]] double scale() const;
    // A length or place moved to whole device pixels.
    [[nodiscard]] double snapped(double points) const;
    [[nodiscard]] const ViewServices& services() const { return services_; }
    [[nodiscard]] bool materialIsTranslucent() const { return materialIsTranslucent_; }
    void setMaterialIsTranslucent(bool translucent) { materialIsTranslucent_ = translucent; }

    // For the elements.
    void invalidate(const QRectF& area);
    // There are new elements: the order of Tab is made anew.
    void structureChanged() { structureHasChanged_ = true; }
    // The content's body is asked for on a later turn although it has not announced a change.
    void requestRefresh();
    // Runs what a control does with that event as the application's current one. The control may
    // be gone afterwards.
    void act(EventType type, const std::function<void()>& action) const;
    // Lets the widget hand all pointer events to the views of the core's own making first.
    void adopt(QWidget& widget);

    // The animated change that is being made; null outside one.
    [[nodiscard]] std::shared_ptr<Motion> currentMotion() const { return currentMotion_; }
    [[nodiscard]] std::shared_ptr<Motion> begin(const ui::Animation& animation);
    // Runs the block as a part of that change.
    void inMotion(const std::shared_ptr<Motion>& motion, const std::function<void()>& block);

    void add(ButtonElement& button);
    void remove(ButtonElement& button);
    // Return, or Escape: presses the button that answers to it; false when there is none.
    [[nodiscard]] bool pressDefaultButton();
    [[nodiscard]] bool pressCancelButton();

    // Whatever is scrolled out of view and gets the focus by keyboard is brought into view.
    void focusCame(const QWidget& widget);
    void add(Scroller& scroller) { scrollers_.push_back(&scroller); }
    void remove(Scroller& scroller) { std::erase(scrollers_, &scroller); }

    void add(RepresentedElement& element);
    void remove(RepresentedElement& element);
    // Asks the views there, the last laid over first, whether one takes the event; a point of the
    // content widget. True when the event has been taken.
    [[nodiscard]] bool offer(EventType type, const QPointF& point);

    [[nodiscard]] const std::optional<ui::Alert>& alert() const { return alert_; }

private:
    void advance();
    void chainFocus();

    ContentWidget& widget_;
    ViewServices services_;
    QtMeasures ownMeasures_;
    const ui::Measures& measures_;
    ui::Arranger arranger_;
    // Nothing to see before the first update.
    ui::View body_{ui::Spacer{}};
    bool materialIsTranslucent_ = false;
    bool structureHasChanged_ = false;
    std::shared_ptr<Motion> currentMotion_;
    std::vector<std::shared_ptr<Motion>> motions_;
    QTimer ticks_;
    std::vector<ButtonElement*> buttons_;
    std::vector<RepresentedElement*> represented_;
    std::vector<Scroller*> scrollers_;
    std::optional<ui::Alert> alert_;
    // Last, because the elements leave the lists above when they die.
    ElementList elements_;
};

} // namespace pelistra::linux
