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

namespace pelistra::linux {

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

QString accessibleNameOf(const ui::Button& button, const ui::Placed& placed) {
    if (!placed.accessibilityLabel.empty()) {
        return QString::fromStdString(placed.accessibilityLabel);
    }
    const std::string text = textIn(button.label);
    return QString::fromStdString(text.empty() ? placed.help : text);
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

void ButtonElement::changed(const ui::View* before, const ui::Placed& now,
                            const Surroundings& surroundings) {
    isFormRow_ = now.isFormRow;
    if (before != nullptr && *before != view()) {
        appearanceChanged();
    }
    if (proxy_.isNull()) {
        // NOLINTNEXTLINE(*-owning-memory): deleted by the destructor, or by its host before
        proxy_ = new ButtonProxy(surroundings.host, [this] { appearanceChanged(); });
        QObject::connect(proxy_, &QPushButton::clicked, proxy_, [this] { press(); });
        scene().adopt(*proxy_);
        proxy_->show();
    }
    const QString name = accessibleNameOf(node(), now);
    if (proxy_->accessibleName() != name) {
        proxy_->setAccessibleName(name);
    }
    setHelp(*proxy_, now.help);
    proxy_->setGeometry(frame().toAlignedRect());
}

void ButtonElement::updateChildren(const ui::Placed& placed, const Surroundings& surroundings) {
    Element::updateChildren(placed, {.host = surroundings.host, .isInControl = true});
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
    if (!proxy_ || !drawnArea().intersects(state.dirty)) {
        return;
    }
    paintField(painter, state);
    PaintState inside = state;
    inside.foreground = labelColor(state.look);
    // A picture gives way a little under the finger; a field shows the press by itself.
    Element::paint(painter, inside);
    if (proxy_->showsFocus()) {
        paintFocus(painter, state.look);
    }
}

} // namespace pelistra::linux
