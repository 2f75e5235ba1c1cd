#include "platform/linux/views/ButtonElement.h"

#include "platform/linux/views/Metrics.h"
#include "platform/linux/views/Outlines.h"
#include "platform/linux/views/Scene.h"
#include "ui/Palette.h"
#include "ui/Walk.h"

#include <algorithm>

#include <QLinearGradient>
#include <QPainter>
#include <QPen>

namespace pelistra::desktop {

namespace {

using ui::ButtonStyle;

constexpr double hoverOpacity = 0.08;
constexpr double pressOpacity = 0.16;
constexpr double borderedOpacity = 0.07;

// The texts in a view, one after the other.
std::string textIn(const ui::View& view) {
    if (const auto* text = view.as<ui::Text>()) {
        return text->text;
    }
    std::string found;
    for (const auto& child : ui::childrenOf(view)) {
        const std::string more = textIn(child);
        found += (found.empty() || more.empty() ? "" : " ") + more;
    }
    return found;
}

QString accessibleNameOf(const ui::Button& button, const Surroundings& surroundings) {
    if (!surroundings.accessibilityLabel.empty()) {
        return QString::fromStdString(surroundings.accessibilityLabel);
    }
    const std::string text = textIn(button.label);
    return QString::fromStdString(text.empty() ? surroundings.help : text);
}

} // namespace

ButtonElement::ButtonElement(Scene& scene, Element* parent) : ElementOf(scene, parent) {
    scene.add(*this);
}

ButtonElement::~ButtonElement() {
    scene().remove(*this);
    if (proxy_) {
        proxy_->retire();
    }
}

bool ButtonElement::isDefaultAction() const {
    return node().isDefaultAction && proxy_ && proxy_->isVisible();
}

bool ButtonElement::isCancel() const {
    return node().role == ui::ButtonRole::Cancel && proxy_ && proxy_->isVisible();
}

void ButtonElement::press() {
    const ui::Action action = node().action;
    scene().act(EventType::LeftMouseUp, [action] { action(); });
}

void ButtonElement::changed(const ui::Button* before, const Surroundings& surroundings) {
    isFormRow_ = surroundings.isFormRow;
    if (before != nullptr && (before->style != node().style || before->size != node().size)) {
        sizeChanged();
    }
    if (before != nullptr && *before != node()) {
        appearanceChanged();
    }
    if (proxy_.isNull()) {
        // NOLINTNEXTLINE(*-owning-memory): deleted by the destructor, or by its host before
        proxy_ = new ButtonProxy(surroundings.host, [this] { appearanceChanged(); });
        QObject::connect(proxy_, &QPushButton::clicked, proxy_, [this] { press(); });
        scene().adopt(*proxy_);
        proxy_->show();
    }
    const QString name = accessibleNameOf(node(), surroundings);
    if (proxy_->accessibleName() != name) {
        proxy_->setAccessibleName(name);
    }
    setHelp(*proxy_, surroundings.help);
    Surroundings inside = surroundings;
    inside.isInControl = true;
    inside.isFormRow = false;
    updateChild(label_, node().label, inside);
}

ui::Edges ButtonElement::insets() const {
    const bool isText = !textIn(node().label).empty();
    switch (node().style) {
    case ButtonStyle::Plain:
        return {};
    case ButtonStyle::Borderless:
        return isText ? ui::Edges{.top = 5, .leading = 12, .bottom = 5, .trailing = 12}
                      : ui::Edges::all(6);
    case ButtonStyle::BorderedProminent:
        return node().size == ui::ControlSize::Large
                   ? ui::Edges{.top = 6, .leading = 20, .bottom = 6, .trailing = 20}
                   : ui::Edges{.top = 3, .leading = 14, .bottom = 3, .trailing = 14};
    case ButtonStyle::Automatic:
        break;
    }
    return isFormRow_ ? metrics::formRowInsets
                      : ui::Edges{.top = 3, .leading = 14, .bottom = 3, .trailing = 14};
}

QSizeF ButtonElement::sizeThatFits(const Proposal& proposal) {
    const ui::Edges edges = insets();
    const double wide = edges.leading + edges.trailing;
    const double high = edges.top + edges.bottom;
    Proposal inside;
    if (proposal.width) {
        inside.width = std::max(0.0, *proposal.width - wide);
    }
    if (proposal.height) {
        inside.height = std::max(0.0, *proposal.height - high);
    }
    QSizeF size = label_->measure(inside) + QSizeF(wide, high);
    if (isFormRow_ && proposal.width) {
        size.setWidth(*proposal.width);
    }
    if (node().style == ButtonStyle::BorderedProminent) {
        size.setWidth(std::max(size.width(), metrics::leastProminentWidth));
    }
    return size;
}

void ButtonElement::arrange() {
    const ui::Edges edges = insets();
    const QRectF inner = frame().adjusted(edges.leading, edges.top, -edges.trailing, -edges.bottom);
    const QSizeF size = label_->measure({.width = inner.width(), .height = inner.height()});
    QRectF place(QPointF(0, 0), size);
    place.moveCenter(inner.center());
    if (isFormRow_) {
        place.moveLeft(inner.left());
    }
    place.moveTopLeft(QPointF(scene().snapped(place.x()), scene().snapped(place.y())));
    label_->place(place);
    proxy_->setGeometry(frame().toAlignedRect());
}

double ButtonElement::drawingMargin() const {
    return metrics::focusRingWidth + 1;
}

ui::Outline ButtonElement::outline() const {
    if (const auto* shape = node().label.as<ui::ContentShape>()) {
        return shape->outline;
    }
    if (isFormRow_) {
        return ui::RoundedRectangle{.cornerRadius = metrics::formRowFieldRadius};
    }
    const bool isLarge = node().size == ui::ControlSize::Large;
    return ui::RoundedRectangle{.cornerRadius =
                                    isLarge ? metrics::largeControlRadius : metrics::controlRadius};
}

QColor ButtonElement::labelColor(const Look& look) const {
    if (node().role == ui::ButtonRole::Destructive) {
        return resolved(ui::Role::Red, look);
    }
    if (node().style == ButtonStyle::BorderedProminent) {
        return resolved(ui::Role::White, look);
    }
    if (node().style == ButtonStyle::Borderless) {
        const bool isActive = proxy_ && (proxy_->isHovered() || proxy_->isDown());
        return resolved(isActive ? ui::Role::Primary : ui::Role::Secondary, look);
    }
    return resolved(isFormRow_ ? ui::Role::Accent : ui::Role::Primary, look);
}

void ButtonElement::paintProminent(QPainter& painter, const Look& look) const {
    // White text needs the deeper accent in both looks.
    Look light = look;
    light.isDark = false;
    QColor fill = resolved(ui::Role::Accent, light);
    constexpr int pressedFactor = 112;
    constexpr int hoveredFactor = 106;
    if (proxy_->isDown()) {
        fill = fill.darker(pressedFactor);
    } else if (proxy_->isHovered()) {
        fill = fill.lighter(hoveredFactor);
    }
    const QRectF area = shownFrame();
    const QPainterPath path = pathOf(outline(), area);
    QLinearGradient shine(area.topLeft(), area.bottomLeft());
    constexpr int shineFactor = 107;
    shine.setColorAt(0, proxy_->isDown() ? fill : fill.lighter(shineFactor));
    shine.setColorAt(1, fill);
    painter.fillPath(path, shine);
}

void ButtonElement::paintField(QPainter& painter, const PaintState& state) const {
    if (node().style == ButtonStyle::BorderedProminent) {
        paintProminent(painter, state.look);
        return;
    }
    const bool isBordered = node().style == ButtonStyle::Automatic && !isFormRow_;
    double opacity = isBordered ? borderedOpacity : 0;
    if (proxy_->isDown()) {
        opacity = pressOpacity;
    } else if (proxy_->isHovered()) {
        opacity = isBordered ? borderedOpacity + (hoverOpacity / 2) : hoverOpacity;
    }
    QRectF area = shownFrame();
    if (isFormRow_) {
        area = area.adjusted(metrics::formRowFieldInset, metrics::formRowFieldInset,
                             -metrics::formRowFieldInset, -metrics::formRowFieldInset);
    }
    const QPainterPath path = pathOf(outline(), area);
    if (opacity > 0) {
        painter.fillPath(path, resolved(ui::Role::Primary, state.look, opacity));
    }
    if (isBordered) {
        painter.strokePath(path,
                           QPen(resolved(ui::Role::Primary, state.look, metrics::borderOpacity),
                                1 / scene().scale()));
    }
}

void ButtonElement::paintFocus(QPainter& painter, const Look& look) const {
    const double half = metrics::focusRingWidth / 2;
    const double outset = isFormRow_ ? -metrics::formRowFieldInset : half;
    const QRectF ring = shownFrame().adjusted(-outset, -outset, outset, outset);
    painter.strokePath(
        pathOf(outline(), ring),
        QPen(resolved(ui::Role::Accent, look, metrics::focusRingOpacity), metrics::focusRingWidth));
}

void ButtonElement::paint(QPainter& painter, const PaintState& state) {
    const double margin = drawingMargin();
    if (!proxy_ ||
        !shownFrame().adjusted(-margin, -margin, margin, margin).intersects(state.dirty)) {
        return;
    }
    paintField(painter, state);
    PaintState inside = state;
    inside.foreground = labelColor(state.look);
    // A picture gives way a little under the finger; a field shows the press by itself.
    label_->paint(painter, inside);
    if (proxy_->showsFocus()) {
        paintFocus(painter, state.look);
    }
}

} // namespace pelistra::desktop
