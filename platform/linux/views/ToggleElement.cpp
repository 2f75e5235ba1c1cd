#include "platform/linux/views/ToggleElement.h"

#include "platform/linux/views/Metrics.h"
#include "platform/linux/views/Scene.h"

#include <algorithm>

#include <QPainter>
#include <QPen>

namespace pelistra::linux {

namespace {

constexpr double slideSeconds = 0.18;
constexpr double offOpacity = 0.16;
constexpr double knobMargin = 2;
constexpr double pressedStretch = 3;
constexpr double knobShadowOpacity = 0.22;

} // namespace

ToggleElement::~ToggleElement() {
    if (proxy_) {
        proxy_->retire();
    }
}

void ToggleElement::makeProxy(QWidget* host) {
    // NOLINTNEXTLINE(*-owning-memory): deleted by the destructor, or by its host before
    proxy_ = new ToggleProxy(
        host,
        [this] {
            slide();
            appearanceChanged();
        },
        [this](bool wanted) {
            // The value decides what the switch shows, also when it does not change.
            scene().requestRefresh();
            const ui::ToggleAction action = node().action;
            scene().act(EventType::LeftMouseUp, [action, wanted] { action(wanted); });
        });
    scene().adopt(*proxy_);
    shownState_ = node().isOn;
    proxy_->setChecked(node().isOn);
    proxy_->show();
}

void ToggleElement::changed(const ui::View* before, const ui::Placed& now,
                            const Surroundings& surroundings) {
    track_ = qRect(now.toggle).translated(-frame().topLeft());
    if (before != nullptr && *before != view()) {
        appearanceChanged();
    }
    if (proxy_.isNull()) {
        makeProxy(surroundings.host);
    }
    proxy_->setAccessibleName(QString::fromStdString(
        now.accessibilityLabel.empty() ? node().label : now.accessibilityLabel));
    setHelp(*proxy_, now.help);
    proxy_->setGeometry(frame().toAlignedRect());
    if (proxy_->isChecked() != node().isOn) {
        proxy_->setChecked(node().isOn);
        slide();
    }
}

void ToggleElement::updateChildren(const ui::Placed& placed, const Surroundings& surroundings) {
    Element::updateChildren(placed, {.host = surroundings.host, .isInControl = true});
}

void ToggleElement::slide() {
    const bool wanted = proxy_ && proxy_->isChecked();
    if (wanted == shownState_) {
        return;
    }
    const double from = knobPlace();
    shownState_ = wanted;
    slidFrom_ = from;
    sliding_ =
        scene().look().reduceMotion ? nullptr : scene().begin(ui::EaseOut{.seconds = slideSeconds});
    appearanceChanged();
}

double ToggleElement::knobPlace() const {
    const double end = shownState_ ? 1 : 0;
    if (!sliding_ || sliding_->hasEnded()) {
        return end;
    }
    return slidFrom_ + ((end - slidFrom_) * sliding_->progress());
}

double ToggleElement::drawingMargin() const {
    return metrics::focusRingWidth + 1;
}

void ToggleElement::paintSwitch(QPainter& painter, const Look& look) const {
    const QRectF track = track_.translated(shownFrame().topLeft());
    const double place = knobPlace();
    const double radius = track.height() / 2;
    const QColor off = resolved(ui::Role::Primary, look, offOpacity);
    Look light = look;
    light.isDark = false;
    QColor fill = mixed(off, resolved(ui::Role::Accent, light), place);
    if (proxy_->isHovered() && !proxy_->isDown()) {
        constexpr double hoverMix = 0.08;
        fill = mixed(fill, resolved(ui::Role::Primary, look), hoverMix);
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(fill);
    painter.drawRoundedRect(track, radius, radius);
    const double stretch = proxy_->isDown() ? pressedStretch : 0;
    const double diameter = track.height() - (2 * knobMargin);
    const double travel = track.width() - diameter - stretch - (2 * knobMargin);
    const QRectF knob(track.left() + knobMargin + (travel * place), track.top() + knobMargin,
                      diameter + stretch, diameter);
    painter.setBrush(withOpacity(Qt::black, knobShadowOpacity));
    painter.drawRoundedRect(knob.adjusted(-0.25, 0.25, 0.25, 1), diameter / 2, diameter / 2);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(knob, diameter / 2, diameter / 2);
    if (proxy_->showsFocus()) {
        const double half = metrics::focusRingWidth / 2;
        const QRectF ring = track.adjusted(-half, -half, half, half);
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(resolved(ui::Role::Accent, look, metrics::focusRingOpacity),
                            metrics::focusRingWidth));
        painter.drawRoundedRect(ring, ring.height() / 2, ring.height() / 2);
    }
}

void ToggleElement::paint(QPainter& painter, const PaintState& state) {
    if (proxy_ && drawnArea().intersects(state.dirty)) {
        Element::paint(painter, state);
        paintSwitch(painter, state.look);
    }
}

} // namespace pelistra::linux
