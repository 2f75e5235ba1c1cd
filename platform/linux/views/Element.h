#pragma once

#include "platform/linux/views/Look.h"
#include "platform/linux/views/Motion.h"
#include "ui/View.h"

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QPointF>
#include <QRectF>
#include <QSizeF>

class QPainter;
class QWidget;

namespace pelistra::desktop {

class Scene;

// The size that a parent offers, in points; an empty side asks for what the view takes by itself.
struct Proposal {
    std::optional<double> width = std::nullopt;
    std::optional<double> height = std::nullopt;

    bool operator==(const Proposal&) const = default;
};

enum class Axis : std::uint8_t { Horizontal, Vertical };

// What a view inherits from the views around it.
struct Surroundings {
    // The widget whose coordinates the frames below are in, and that the widgets of controls are
    // made in.
    QWidget* host = nullptr;
    // Of the nearest stack.
    std::optional<Axis> stack = std::nullopt;
    // A row of a form itself, not something inside it.
    bool isFormRow = false;
    // Inside a control, whose accessible name stands for everything in it.
    bool isInControl = false;
    // What a screen reader says for the whole; empty: what is in it.
    std::string accessibilityLabel = {};
    std::string help = {};
};

// What is inherited while drawing.
struct PaintState {
    const Look& look;
    // Of texts and symbols without a colour of their own.
    QColor foreground;
    // Nothing outside needs to be drawn; in the coordinates of the element's frame.
    QRectF dirty;
};

// One view of the tree on the screen. It outlives the values that it is updated with, as long as
// each continues the one before; all that a user can have changed (scroll position, hover, press)
// lives in it or in its widget.
class Element {
public:
    Element(Scene& scene, Element* parent) : scene_(scene), parent_(parent) {}
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;
    virtual ~Element() = default;

    // Takes over a value of the kind that this element was made for.
    virtual void update(const ui::View& view, const Surroundings& surroundings) = 0;
    // The value of the last update.
    [[nodiscard]] virtual const ui::View& view() const = 0;

    // The size that it takes of what it is offered.
    [[nodiscard]] QSizeF measure(const Proposal& proposal);
    // Gives it its frame, in the coordinates of its host.
    void place(const QRectF& frame);
    [[nodiscard]] const QRectF& frame() const { return frame_; }

    virtual void paint(QPainter& painter, const PaintState& state) = 0;
    // Asks for that area, in the coordinates of the frame, to be drawn again.
    virtual void invalidate(const QRectF& area);
    // Called once before it goes away, to have drawn what was behind it.
    void willLeave();
    virtual void forEachChild(const std::function<void(Element&)>& call) = 0;
    // The widget of a control that Tab reaches; null when there is none.
    [[nodiscard]] virtual QWidget* focusable() const { return nullptr; }
    // Any widget that stands for it; null when there is none.
    [[nodiscard]] virtual QWidget* widget() const { return focusable(); }
    // Drops what was found out for the former look.
    virtual void lookChanged() {}

    // This element's sizes are no longer what they were.
    void sizeChanged();

protected:
    [[nodiscard]] virtual QSizeF sizeThatFits(const Proposal& proposal) = 0;
    // Places what is inside, in frame().
    virtual void arrange() {}
    [[nodiscard]] virtual bool draws() const { return false; }
    // How far beyond its frame it draws.
    [[nodiscard]] virtual double drawingMargin() const { return 0; }
    // Has what it draws drawn again.
    void appearanceChanged();
    // The frame on its way during an animated change, else the frame.
    [[nodiscard]] QRectF shownFrame() const;
    // 1 outside animated changes.
    [[nodiscard]] double motionProgress() const;
    // Takes part in the animated change that is being made, if there is one.
    [[nodiscard]] bool joinMotion();

    [[nodiscard]] Scene& scene() const { return scene_; }
    [[nodiscard]] Element* parent() const { return parent_; }

    // Brings a child to a view: updates it when it can show it, else makes a new one.
    void updateChild(std::unique_ptr<Element>& child, const ui::View& view,
                     const Surroundings& surroundings);

private:
    struct Measured {
        Proposal proposal;
        QSizeF size;
    };

    [[nodiscard]] QRectF drawnArea() const;

    Scene& scene_;
    Element* parent_;
    QRectF frame_;
    bool isPlaced_ = false;
    QRectF frameBefore_;
    std::shared_ptr<Motion> motion_;
    // The answers to the last few different offers.
    std::array<std::optional<Measured>, 4> measured_;
    std::size_t nextMeasured_ = 0;
};

using ElementPtr = std::unique_ptr<Element>;

// The element that shows views of that view's kind, not yet updated with it.
[[nodiscard]] ElementPtr makeElement(const ui::View& view, Scene& scene, Element* parent);

// Hides the widgets of an element and of all in it.
void hideWidgets(Element& element);

// Whether an element of the first view can be updated with the second.
[[nodiscard]] bool canContinue(const ui::View& before, const ui::View& after);

// An element of one kind of node.
template <class Kind>
class ElementOf : public Element {
public:
    using Element::Element;

    void update(const ui::View& view, const Surroundings& surroundings) final {
        const auto before = view_;
        view_ = view;
        changed(before ? before->template as<Kind>() : nullptr, surroundings);
    }
    // The value is there from the first update on, before anybody asks for it.
    [[nodiscard]] const ui::View& view() const final {
        return *view_; // NOLINT(bugprone-unchecked-optional-access)
    }
    void forEachChild(const std::function<void(Element&)>& /*call*/) override {}

protected:
    // The value is a new one; before is null at the first.
    virtual void changed(const Kind* before, const Surroundings& surroundings) = 0;
    [[nodiscard]] const Kind& node() const { return *view().template as<Kind>(); }

private:
    std::optional<ui::View> view_;
};

// An element that has one content, takes its size, and draws nothing itself.
template <class Kind>
class WrapperOf : public ElementOf<Kind> {
public:
    using ElementOf<Kind>::ElementOf;

    void paint(QPainter& painter, const PaintState& state) override {
        content_->paint(painter, state);
    }
    void forEachChild(const std::function<void(Element&)>& call) override { call(*content_); }

protected:
    void changed(const Kind* /*before*/, const Surroundings& surroundings) override {
        this->updateChild(content_, this->node().content, surroundings);
    }
    [[nodiscard]] QSizeF sizeThatFits(const Proposal& proposal) override {
        return content_->measure(proposal);
    }
    void arrange() override { content_->place(this->frame()); }

    [[nodiscard]] Element& content() const { return *content_; }
    [[nodiscard]] ElementPtr& contentPointer() { return content_; }

private:
    ElementPtr content_;
};

} // namespace pelistra::desktop
