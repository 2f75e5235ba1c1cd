#pragma once

#include "platform/linux/views/Look.h"
#include "platform/linux/views/Motion.h"
#include "ui/Arrangement.h"
#include "ui/Nodes.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QRectF>

class QPainter;
class QWidget;

namespace pelistra::linux {

class Element;
class Scene;
using ElementPtr = std::unique_ptr<Element>;

// What an element inherits from those around it.
struct Surroundings {
    // The widget whose coordinates the frames below are in, and that the widgets of controls are
    // made in.
    QWidget* host = nullptr;
    // Inside a control, whose accessible name stands for everything in it.
    bool isInControl = false;
};

// What is inherited while drawing.
struct PaintState {
    const Look& look;
    // Of texts and symbols without a colour of their own.
    QColor foreground;
    // Nothing outside needs to be drawn; in the coordinates of the element's frame.
    QRectF dirty;
};

// Elements one over the other, kept from one arrangement to the next by their keys.
class ElementList {
public:
    // Updates those that are still there and makes the new ones. One that goes during an animated
    // change, and says how, stays until the change has ended, between those that it lay between.
    void update(const std::vector<ui::Placed>& placed, Scene& scene, Element* owner,
                const Surroundings& surroundings);
    void paint(QPainter& painter, const PaintState& state);
    // Those that are there to stay.
    void forEach(const std::function<void(Element&)>& call) const;

private:
    struct Leaving {
        ElementPtr element;
        std::size_t place;
    };

    void keepLeaving(std::vector<ElementPtr>& before, const Scene& scene);

    std::vector<ElementPtr> present_;
    std::vector<Leaving> leaving_;
    // The change that they fade in.
    std::shared_ptr<Motion> leavingMotion_;
};

// One placed element on the screen. It outlives the values that it is updated with, as long as
// each continues the one before; all that a user can have changed (scroll position, hover, press)
// lives in it or in its widget.
class Element {
public:
    Element(Scene& scene, Element* parent) : scene_(scene), parent_(parent) {}
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    virtual ~Element() = default;

    // Takes over a value with the key that this element was made for.
    void update(const ui::Placed& placed, const Surroundings& surroundings);
    [[nodiscard]] const std::string& key() const { return key_; }
    // In the coordinates of its host.
    [[nodiscard]] const QRectF& frame() const { return frame_; }

    virtual void paint(QPainter& painter, const PaintState& state) {
        children_.paint(painter, state);
    }
    // Asks for an area of what is inside to be drawn again, in the coordinates of the children.
    virtual void invalidateInside(const QRectF& area) { invalidate(area); }
    // Called once before it goes away, to have drawn what was behind it.
    void willLeave();
    // It goes in an animated change, and is drawn until that has ended; false when it cannot.
    [[nodiscard]] virtual bool leave(const std::shared_ptr<Motion>& /*motion*/) { return false; }
    void forEachChild(const std::function<void(Element&)>& call) const { children_.forEach(call); }
    // The widget of a control that Tab reaches; null when there is none.
    [[nodiscard]] virtual QWidget* focusable() const { return nullptr; }
    // Any widget that stands for it; null when there is none.
    [[nodiscard]] virtual QWidget* widget() const { return focusable(); }
    // Drops what was found out for the former look.
    virtual void lookChanged() {}

protected:
    // The value of the last update.
    [[nodiscard]] const ui::View& view() const { return view_; }
    // There is a new value, and its frame; before is null at the first.
    virtual void changed(const ui::View* /*before*/, const ui::Placed& /*now*/,
                         const Surroundings& /*surroundings*/) {}
    virtual void updateChildren(const ui::Placed& placed, const Surroundings& surroundings) {
        children_.update(placed.children, scene_, this, surroundings);
    }
    [[nodiscard]] virtual bool draws() const { return false; }
    // How far beyond its frame it draws.
    [[nodiscard]] virtual double drawingMargin() const { return 0; }
    // Has what it draws drawn again.
    void appearanceChanged();
    // Has an area drawn again, in the coordinates of the frame.
    void invalidate(const QRectF& area) const;
    // The frame on its way during an animated change, else the frame.
    [[nodiscard]] QRectF shownFrame() const;
    // With the margin.
    [[nodiscard]] QRectF drawnArea() const;
    // 1 outside animated changes.
    [[nodiscard]] double motionProgress() const;
    // Takes part in the animated change that is being made, if there is one.
    [[nodiscard]] bool joinMotion();

    [[nodiscard]] Scene& scene() const { return scene_; }

private:
    void place(const QRectF& frame);

    Scene& scene_;
    Element* parent_;
    // Nothing to see before the first update.
    ui::View view_{ui::Spacer{}};
    std::string key_;
    ElementList children_;
    QRectF frame_;
    bool isPlaced_ = false;
    QRectF frameBefore_;
    std::shared_ptr<Motion> motion_;
};

// The element that shows such a value, not yet updated with it.
[[nodiscard]] ElementPtr makeElement(const ui::Placed& placed, Scene& scene, Element* parent);

// Hides the widgets of an element and of all in it.
void hideWidgets(Element& element);

[[nodiscard]] QRectF qRect(const ui::Area& area);

// An element of one kind of node.
template <class Kind>
class ElementOf : public Element {
public:
    using Element::Element;

protected:
    [[nodiscard]] const Kind& node() const { return *view().template as<Kind>(); }
};

} // namespace pelistra::linux
