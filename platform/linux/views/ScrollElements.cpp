#include "platform/linux/views/ScrollElements.h"

#include "platform/linux/views/Metrics.h"
#include "platform/linux/views/Outlines.h"
#include "platform/linux/views/Scene.h"
#include "ui/Palette.h"
#include "ui/Walk.h"

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

namespace pelistra::desktop {

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

bool isControlRow(const ui::View& row) {
    if (const auto* button = row.as<ui::Button>()) {
        return button->style == ui::ButtonStyle::Automatic;
    }
    return row.as<ui::Toggle>() != nullptr;
}

} // namespace

template <class Kind>
ScrollingElement<Kind>::~ScrollingElement() {
    if (scroller_) {
        this->scene().remove(*scroller_);
    }
}

template <class Kind>
void ScrollingElement<Kind>::makeScroller(Axis axis, QWidget* host) {
    axis_ = axis;
    scroller_ = std::make_unique<Scroller>(axis, host, [this] { this->appearanceChanged(); });
    events_ = std::make_unique<ScrollEvents>(*scroller_, this->scene());
    this->scene().adopt(*scroller_->viewport());
    this->scene().add(*scroller_);
}

template <class Kind>
QPointF ScrollingElement<Kind>::origin() const {
    const QPointF shift = axis_ == Axis::Horizontal ? QPointF(scroller_->offset(), 0)
                                                    : QPointF(0, scroller_->offset());
    return QPointF(this->frame().toAlignedRect().topLeft()) - shift;
}

template <class Kind>
void ScrollingElement<Kind>::invalidate(const QRectF& area) {
    const QRectF visible = area.translated(origin()).intersected(this->frame());
    if (!visible.isEmpty() && this->parent() != nullptr) {
        this->parent()->invalidate(visible);
    } else if (!visible.isEmpty()) {
        this->scene().invalidate(visible);
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

void HorizontalScrollElement::changed(const ui::HorizontalScroll* /*before*/,
                                      const Surroundings& surroundings) {
    if (!hasScroller()) {
        makeScroller(Axis::Horizontal, surroundings.host);
    }
    Surroundings inside = surroundings;
    inside.host = scroller().content();
    inside.isFormRow = false;
    updateChild(content_, node().content, inside);
}

QSizeF HorizontalScrollElement::sizeThatFits(const Proposal& proposal) {
    const QSizeF size = content_->measure({.width = std::nullopt, .height = proposal.height});
    return {proposal.width.value_or(size.width()), size.height()};
}

void HorizontalScrollElement::arrange() {
    const QSizeF size = content_->measure({.width = std::nullopt, .height = frame().height()});
    content_->place(
        QRectF(QPointF(0, scene().snapped((frame().height() - size.height()) / 2)), size));
    scroller().setGeometry(frame(), QSizeF(size.width(), frame().height()));
}

// Draws into a layer of its own whose edges fade where more lies beyond them.
void HorizontalScrollElement::paintFaded(QPainter& painter, const PaintState& state) const {
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
                  [&](const PaintState& scrolled) { content_->paint(inside, scrolled); });
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
                      [&](const PaintState& scrolled) { content_->paint(painter, scrolled); });
    }
}

// Forms

void GroupedFormElement::forEachChild(const std::function<void(Element&)>& call) {
    for (const auto& section : sections_) {
        call(*section.title);
        for (const auto& row : section.rows) {
            call(*row);
        }
    }
}

void GroupedFormElement::updateSection(FormSectionElement& section, const ui::FormSection& now,
                                       const Surroundings& surroundings) {
    updateChild(section.title,
                ui::Text{.text = now.title,
                         .font = {.size = ui::TextStyle::Body, .weight = ui::Weight::Semibold}},
                surroundings);
    std::vector<ui::View> before;
    before.reserve(section.rows.size());
    for (const auto& row : section.rows) {
        before.push_back(row->view());
    }
    const auto origins = ui::continuedFrom(before, now.rows);
    std::vector<ElementPtr> rows(now.rows.size());
    for (std::size_t place = 0; place < rows.size(); ++place) {
        if (const auto origin = origins[place]) {
            rows[place] = std::move(section.rows[*origin]);
        }
    }
    std::swap(rows, section.rows);
    if (before.size() != now.rows.size()) {
        sizeChanged();
    }
    for (const auto& gone : rows) {
        if (gone) {
            gone->willLeave();
        }
    }
    for (std::size_t place = 0; place < now.rows.size(); ++place) {
        Surroundings inside = surroundings;
        inside.isFormRow = isControlRow(now.rows[place]);
        updateChild(section.rows[place], now.rows[place], inside);
    }
}

void GroupedFormElement::changed(const ui::GroupedForm* /*before*/,
                                 const Surroundings& surroundings) {
    if (!hasScroller()) {
        makeScroller(Axis::Vertical, surroundings.host);
    }
    if (sections_.size() != node().sections.size()) {
        sizeChanged();
        appearanceChanged();
    }
    sections_.resize(node().sections.size());
    Surroundings inside = surroundings;
    inside.host = scroller().content();
    inside.stack = Axis::Vertical;
    for (std::size_t place = 0; place < sections_.size(); ++place) {
        updateSection(sections_[place], node().sections[place], inside);
    }
}

double GroupedFormElement::layOutSection(FormSectionElement& section, const QRectF& column,
                                         bool places) {
    const ui::Edges& insets = metrics::formRowInsets;
    const QSizeF title = section.title->measure({.width = column.width()});
    if (places) {
        section.title->place(
            QRectF(column.left() + insets.leading, column.top(), title.width(), title.height()));
        section.lines.clear();
    }
    const double cardTop = column.top() + title.height() + metrics::formTitleDistance;
    double at = cardTop;
    for (std::size_t place = 0; place < section.rows.size(); ++place) {
        Element& row = *section.rows[place];
        const bool isControl = isControlRow(row.view());
        const ui::Edges around = isControl ? ui::Edges() : insets;
        const double width = column.width() - around.leading - around.trailing;
        const QSizeF size = row.measure({.width = width});
        if (places) {
            row.place(QRectF(column.left() + around.leading, at + around.top, size.width(),
                             size.height()));
        }
        at += around.top + size.height() + around.bottom;
        if (places && place + 1 < section.rows.size()) {
            section.lines.push_back(at);
        }
    }
    if (places) {
        const QRectF card(column.left(), cardTop, column.width(), at - cardTop);
        if (card != section.card) {
            invalidate(section.card);
            section.card = card;
            invalidate(card);
        }
    }
    return at;
}

double GroupedFormElement::layOut(double width, bool places) {
    const double columnWidth =
        std::max(0.0, std::min(width - (2 * metrics::formMargin), metrics::formWidest));
    const double left = std::floor((width - columnWidth) / 2);
    double at = metrics::formMargin - metrics::formTitleDistance;
    for (std::size_t place = 0; place < sections_.size(); ++place) {
        at += place > 0 ? metrics::formSectionDistance : 0;
        at = layOutSection(sections_[place], QRectF(left, at, columnWidth, 0), places);
    }
    return at + metrics::formMargin;
}

QSizeF GroupedFormElement::sizeThatFits(const Proposal& proposal) {
    const double width = proposal.width.value_or(metrics::formWidest);
    const double bounded = std::isfinite(width) ? width : metrics::formWidest;
    return {width, proposal.height ? *proposal.height : layOut(bounded, false)};
}

void GroupedFormElement::arrange() {
    const double height = layOut(frame().width(), true);
    scroller().setGeometry(frame(), QSizeF(frame().width(), height));
}

void GroupedFormElement::paintSection(const FormSectionElement& section, QPainter& painter,
                                      const PaintState& state) const {
    section.title->paint(painter, state);
    if (!section.card.adjusted(-2, -2, 2, 4).intersects(state.dirty)) {
        return;
    }
    const ui::RoundedRectangle outline = {.cornerRadius = metrics::formCardRadius};
    const double hair = 1 / scene().scale();
    constexpr double shadowOpacity = 0.05;
    painter.fillPath(pathOf(outline, section.card.translated(0, 1)),
                     withOpacity(Qt::black, shadowOpacity));
    const QPainterPath card = pathOf(outline, section.card);
    painter.fillPath(card, resolved(ui::palette::card, state.look));
    painter.strokePath(
        pathOf(outline, section.card.adjusted(hair / 2, hair / 2, -hair / 2, -hair / 2)),
        QPen(resolved(ui::Role::Primary, state.look, hairlineOpacity), hair));
    for (const double line : section.lines) {
        painter.fillRect(QRectF(section.card.left() + metrics::formRowInsets.leading,
                                scene().snapped(line - (hair / 2)),
                                section.card.width() - (metrics::formRowInsets.leading +
                                                        metrics::formRowInsets.trailing),
                                hair),
                         resolved(ui::Role::Primary, state.look, hairlineOpacity));
    }
    for (const auto& row : section.rows) {
        row->paint(painter, state);
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
        for (const auto& section : sections_) {
            paintSection(section, painter, scrolled);
        }
    });
    if (scroller().furthest() > 0) {
        paintThumb(painter, state.look);
    }
}

template class ScrollingElement<ui::HorizontalScroll>;
template class ScrollingElement<ui::GroupedForm>;

} // namespace pelistra::desktop
