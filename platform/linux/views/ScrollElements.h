#pragma once

#include "platform/linux/views/Element.h"
#include "platform/linux/views/Scroller.h"
#include "ui/Nodes.h"

#include <memory>
#include <string>
#include <vector>

#include <QObject>

namespace pelistra::desktop {

// What elements with a scroller have in common: coordinates inside are those of what is scrolled.
// The destructor overrides the base's virtual one, which the check does not see in a template.
template <class Kind>
class ScrollingElement // NOLINT(cppcoreguidelines-virtual-class-destructor)
    : public ElementOf<Kind> {
public:
    using ElementOf<Kind>::ElementOf;
    ScrollingElement(const ScrollingElement&) = delete;
    ScrollingElement& operator=(const ScrollingElement&) = delete;
    ~ScrollingElement() override;

    void invalidate(const QRectF& area) override;
    [[nodiscard]] QWidget* widget() const override { return scroller_->viewport(); }

protected:
    void makeScroller(Axis axis, QWidget* host);
    [[nodiscard]] Scroller& scroller() const { return *scroller_; }
    [[nodiscard]] bool hasScroller() const { return scroller_ != nullptr; }
    [[nodiscard]] QPointF origin() const;
    // Draws by the block, moved and clipped to what is visible.
    void paintScrolled(QPainter& painter, const PaintState& state,
                       const std::function<void(const PaintState&)>& block) const;
    // Coordinates inside begin at the viewport's corner.
    [[nodiscard]] bool draws() const override { return true; }

private:
    Axis axis_ = Axis::Horizontal;
    std::unique_ptr<Scroller> scroller_;
    // Hears what reaches the viewport.
    std::unique_ptr<QObject> events_;
};

class HorizontalScrollElement final : public ScrollingElement<ui::HorizontalScroll> {
public:
    using ScrollingElement::ScrollingElement;

    void paint(QPainter& painter, const PaintState& state) override;
    void forEachChild(const std::function<void(Element&)>& call) override { call(*content_); }

protected:
    void changed(const ui::HorizontalScroll* before, const Surroundings& surroundings) override;
    [[nodiscard]] QSizeF sizeThatFits(const Proposal& proposal) override;
    void arrange() override;

private:
    void paintFaded(QPainter& painter, const PaintState& state) const;

    ElementPtr content_;
};

// One section: its title, and its rows on a card.
struct FormSectionElement {
    ElementPtr title;
    std::vector<ElementPtr> rows;
    QRectF card;
    // Where the hairlines between the rows lie.
    std::vector<double> lines;
};

class GroupedFormElement final : public ScrollingElement<ui::GroupedForm> {
public:
    using ScrollingElement::ScrollingElement;

    void paint(QPainter& painter, const PaintState& state) override;
    void forEachChild(const std::function<void(Element&)>& call) override;

protected:
    void changed(const ui::GroupedForm* before, const Surroundings& surroundings) override;
    [[nodiscard]] QSizeF sizeThatFits(const Proposal& proposal) override;
    void arrange() override;

private:
    void updateSection(FormSectionElement& section, const ui::FormSection& now,
                       const Surroundings& surroundings);
    // Places everything at that width when `places`; returns the height.
    double layOut(double width, bool places);
    double layOutSection(FormSectionElement& section, const QRectF& column, bool places);
    void paintSection(const FormSectionElement& section, QPainter& painter,
                      const PaintState& state) const;
    void paintThumb(QPainter& painter, const Look& look) const;

    std::vector<FormSectionElement> sections_;
};

} // namespace pelistra::desktop
