#include "platform/linux/views/ScrollElements.h"

#include "platform/linux/views/Metrics.h"
#include "platform/linux/views/Outlines.h"
#include "platform/linux/views/Scene.h"
#include "ui/Palette.h"

#include <algorithm>
#include <cmath>

#include <QEvent>
#include <QFocusEvent>
#include <QImage>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QPen>
#include <QWheelEvent>

namespace pelistra::linux {

namespace {

// The part of the viewport's edge in which more of the content fades away.
constexpr double fadeWidth = 22;
constexpr double thumbWidth = 5;
constexpr double thumbMargin = 3;
constexpr double thumbOpacity = 0.28;
constexpr double leastThumb = 28;
constexpr double hairlineOpacity = 0.1;

// Sends wheels and keys that reach the viewport to the scroller.
class ScrollEvents final : public QObject {
public:
    ScrollEvents(Scroller& scroller, const Scene& scene) : scroller_(scroller), scene_(scene) {
        scroller.viewport()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        const bool calm = scene_.look().reduceMotion;
        if (event->type() == QEvent::Wheel && scroller_.furthest() > 0) {
            scroller_.wheel(*static_cast<QWheelEvent*>(event), calm);
            event->accept();
            return true;
        }
        return event->type() == QEvent::KeyPress && scroller_.furthest() > 0 &&
               scroller_.key(static_cast<QKeyEvent*>(event)->key(), calm);
    }

private:
    Scroller& scroller_;
    const Scene& scene_;
};

} // namespace

template <class Kind>
ScrollingElement<Kind>::~ScrollingElement() {
    if (scroller_) {
        this->scene().remove(*scroller_);
    }
}

template <class Kind>
void ScrollingElement<Kind>::changed(const ui::View* before, const ui::Placed& now,
                                     const Surroundings& surroundings) {
    if (before == nullptr) {
        scroller_ = std::make_unique<Scroller>(orientation_, surroundings.host,
                                               [this] { this->appearanceChanged(); });
        events_ = std::make_unique<ScrollEvents>(*scroller_, this->scene());
        this->scene().adopt(*scroller_->viewport());
        this->scene().add(*scroller_);
    }
    scroller_->setGeometry(this->frame(), {now.content.width, now.content.height});
}

template <class Kind>
void ScrollingElement<Kind>::updateChildren(const ui::Placed& placed,
                                            const Surroundings& /*surroundings*/) {
    Element::updateChildren(placed, {.host = scroller_->content()});
}

template <class Kind>
QPointF ScrollingElement<Kind>::origin() const {
    const QPointF shift = orientation_ == Qt::Horizontal ? QPointF(scroller_->offset(), 0)
                                                         : QPointF(0, scroller_->offset());
    return QPointF(this->frame().toAlignedRect().topLeft()) - shift;
}

template <class Kind>
void ScrollingElement<Kind>::invalidateInside(const QRectF& area) {
    const QRectF visible = area.translated(origin()).intersected(this->frame());
    if (!visible.isEmpty()) {
        this->invalidate(visible);
    }
}

template <class Kind>
void ScrollingElement<Kind>::paintScrolled(
    QPainter& painter, const PaintState& state,
    const std::function<void(const PaintState&)>& block) const {
    PaintState inside = state;
    inside.dirty = state.dirty.intersected(this->frame()).translated(-origin());
    if (inside.dirty.isEmpty()) {
        return;
    }
    painter.save();
    painter.setClipRect(this->frame(), Qt::IntersectClip);
    painter.translate(origin());
    block(inside);
    painter.restore();
}

// Sideways

// Draws into a layer of its own whose edges fade where more lies beyond them.
void HorizontalScrollElement::paintFaded(QPainter& painter, const PaintState& state) {
    const double scale = scene().scale();
    QImage layer(QSize(static_cast<int>(std::ceil(frame().width() * scale)),
                       static_cast<int>(std::ceil(frame().height() * scale))),
                 QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(scale);
    layer.fill(Qt::transparent);
    QPainter inside(&layer);
    inside.setRenderHints(painter.renderHints());
    inside.translate(-frame().topLeft());
    paintScrolled(inside, state,
                  [&](const PaintState& scrolled) { Element::paint(inside, scrolled); });
    inside.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    const auto fade = [&inside](const QPointF& clear, const QPointF& full, const QRectF& area) {
        QLinearGradient gradient(clear, full);
        gradient.setColorAt(0, Qt::transparent);
        gradient.setColorAt(1, Qt::black);
        inside.fillRect(area, gradient);
    };
    const QRectF all = frame();
    const double fromBegin = std::min(fadeWidth, scroller().offset());
    if (fromBegin > 0) {
        fade(all.topLeft(), all.topLeft() + QPointF(fromBegin, 0),
             QRectF(all.topLeft(), QSizeF(fromBegin, all.height())));
    }
    const double fromEnd = std::min(fadeWidth, scroller().furthest() - scroller().offset());
    if (fromEnd > 0) {
        fade(all.topRight(), all.topRight() - QPointF(fromEnd, 0),
             QRectF(all.right() - fromEnd, all.top(), fromEnd + 1, all.height()));
    }
    inside.end();
    painter.drawImage(all.topLeft(), layer);
}

void HorizontalScrollElement::paint(QPainter& painter, const PaintState& state) {
    if (scroller().furthest() > 0 && state.dirty.intersects(frame())) {
        paintFaded(painter, state);
    } else {
        paintScrolled(painter, state,
                      [&](const PaintState& scrolled) { Element::paint(painter, scrolled); });
    }
}

// Forms

void GroupedFormElement::changed(const ui::View* before, const ui::Placed& now,
                                 const Surroundings& surroundings) {
    ScrollingElement::changed(before, now, surroundings);
    if (cards_ != now.cards) {
        cards_ = now.cards;
        appearanceChanged();
    }
}

void GroupedFormElement::paintCard(const ui::Card& card, QPainter& painter,
                                   const PaintState& state) const {
    const QRectF area = qRect(card.area);
    if (!area.adjusted(-2, -2, 2, 4).intersects(state.dirty)) {
        return;
    }
    const ui::RoundedRectangle outline = {.cornerRadius = metrics::formCardRadius};
    const double hair = 1 / scene().scale();
    constexpr double shadowOpacity = 0.05;
    painter.fillPath(pathOf(outline, area.translated(0, 1)), withOpacity(Qt::black, shadowOpacity));
    painter.fillPath(pathOf(outline, area), resolved(ui::palette::card, state.look));
    const QColor line = resolved(ui::Role::Primary, state.look, hairlineOpacity);
    painter.strokePath(pathOf(outline, area.adjusted(hair / 2, hair / 2, -hair / 2, -hair / 2)),
                       QPen(line, hair));
    const ui::Edges& insets = metrics::formRowInsets;
    for (const double y : card.lines) {
        painter.fillRect(QRectF(area.left() + insets.leading, scene().snapped(y - (hair / 2)),
                                area.width() - insets.leading - insets.trailing, hair),
                         line);
    }
}

void GroupedFormElement::paintThumb(QPainter& painter, const Look& look) const {
    const double page = frame().height();
    const double whole = page + scroller().furthest();
    const double room = page - (2 * thumbMargin);
    const double length = std::max(leastThumb, room * page / whole);
    const double at = (room - length) * scroller().offset() / scroller().furthest();
    const QRectF thumb(frame().right() - thumbMargin - thumbWidth, frame().top() + thumbMargin + at,
                       thumbWidth, length);
    painter.fillPath(pathOf(ui::Capsule(), thumb), resolved(ui::Role::Primary, look, thumbOpacity));
}

void GroupedFormElement::paint(QPainter& painter, const PaintState& state) {
    painter.fillRect(frame().intersected(state.dirty), resolved(ui::palette::window, state.look));
    paintScrolled(painter, state, [&](const PaintState& scrolled) {
        for (const ui::Card& card : cards_) {
            paintCard(card, painter, scrolled);
        }
        Element::paint(painter, scrolled);
    });
    if (scroller().furthest() > 0) {
        paintThumb(painter, state.look);
    }
}

template class ScrollingElement<ui::HorizontalScroll>;
template class ScrollingElement<ui::GroupedForm>;

} // namespace pelistra::linux
