#pragma once

#include "platform/linux/views/Element.h"
#include "platform/linux/views/Scroller.h"
#include "ui/Nodes.h"

#include <memory>
#include <vector>

#include <QObject>

namespace pelistra::linux {

// What elements with a scroller have in common: coordinates inside are those of what is scrolled.
// The destructor overrides the base's virtual one, which the check does not see in a template.
template <class Kind>
class ScrollingElement // NOLINT(cppcoreguidelines-virtual-class-destructor)
    : public ElementOf<Kind> {
public:
    ScrollingElement(Qt::Orientation orientation, Scene& scene, Element* parent)
        : ElementOf<Kind>(scene, parent), orientation_(orientation) {}
    ScrollingElement(const ScrollingElement&) = delete;
    ScrollingElement& operator=(const ScrollingElement&) = delete;
    ~ScrollingElement() override;

    void invalidateInside(const QRectF& area) override;
    [[nodiscard]] QWidget* widget() const override { return scroller_->viewport(); }

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;
    void updateChildren(const ui::Placed& placed, const Surroundings& surroundings) override;
    [[nodiscard]] Scroller& scroller() const { return *scroller_; }
    [[nodiscard]] QPointF origin() const;
    // Draws by the block, moved and clipped to what is visible.
    void paintScrolled(QPainter& painter, const PaintState& state,
                       const std::function<void(const PaintState&)>& block) const;
    // Coordinates inside begin at the viewport's corner.
    [[nodiscard]] bool draws() const override { return true; }

private:
    Qt::Orientation orientation_;
    std::unique_ptr<Scroller> scroller_;
    // Hears what reaches the viewport.
    std::unique_ptr<QObject> events_;
};

class HorizontalScrollElement final : public ScrollingElement<ui::HorizontalScroll> {
public:
    HorizontalScrollElement(Scene& scene, Element* parent)
        : ScrollingElement(Qt::Horizontal, scene, parent) {}

    void paint(QPainter& painter, const PaintState& state) override;

private:
    void paintFaded(QPainter& painter, const PaintState& state);
};

class GroupedFormElement final : public ScrollingElement<ui::GroupedForm> {
public:
    GroupedFormElement(Scene& scene, Element* parent)
        : ScrollingElement(Qt::Vertical, scene, parent) {}

    void paint(QPainter& painter, const PaintState& state) override;

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;

private:
    void paintCard(const ui::Card& card, QPainter& painter, const PaintState& state) const;
    void paintThumb(QPainter& painter, const Look& look) const;

    std::vector<ui::Card> cards_;
};

} // namespace pelistra::linux
