#include "platform/linux/views/ModifierElements.h"

#include "platform/linux/views/Outlines.h"
#include "platform/linux/views/Scene.h"

#include <algorithm>
#include <utility>

#include <QPainter>

namespace pelistra::desktop {

namespace {

std::optional<double> lessBy(const std::optional<double>& length, double taken) {
    return length ? std::optional(std::max(0.0, *length - taken)) : std::nullopt;
}

struct Limits {
    std::optional<double> fixed;
    std::optional<double> least;
    std::optional<double> most;
};

// What the content of a frame is offered.
std::optional<double> offered(const Limits& limits, const std::optional<double>& length) {
    if (limits.fixed) {
        return limits.fixed;
    }
    if (!length) {
        return std::nullopt;
    }
    const double bounded = limits.most ? std::min(*length, *limits.most) : *length;
    return limits.least ? std::max(bounded, *limits.least) : bounded;
}

// What a frame takes whose content takes `content` of what is offered.
double taken(const Limits& limits, const std::optional<double>& length, double content) {
    if (limits.fixed) {
        return *limits.fixed;
    }
    const double low = limits.least.value_or(std::min(content, limits.most.value_or(content)));
    const double high = limits.most.value_or(std::max(content, limits.least.value_or(content)));
    const double wanted = length.value_or(content);
    return std::max(low, std::min(wanted, high));
}

Limits widthsOf(const ui::FrameLimits& limits) {
    return {.fixed = limits.width, .least = limits.minWidth, .most = limits.maxWidth};
}

Limits heightsOf(const ui::FrameLimits& limits) {
    return {.fixed = limits.height, .least = limits.minHeight, .most = limits.maxHeight};
}

} // namespace

void PaddingElement::changed(const ui::Padding* before, const Surroundings& surroundings) {
    if (before != nullptr && before->edges != node().edges) {
        sizeChanged();
    }
    WrapperOf::changed(before, surroundings);
}

QSizeF PaddingElement::sizeThatFits(const Proposal& proposal) {
    const ui::Edges& edges = node().edges;
    const double wide = edges.leading + edges.trailing;
    const double high = edges.top + edges.bottom;
    return content().measure(
               {.width = lessBy(proposal.width, wide), .height = lessBy(proposal.height, high)}) +
           QSizeF(wide, high);
}

void PaddingElement::arrange() {
    const ui::Edges& edges = node().edges;
    content().place(frame().adjusted(edges.leading, edges.top, -edges.trailing, -edges.bottom));
}

void FrameElement::changed(const ui::Frame* before, const Surroundings& surroundings) {
    if (before != nullptr && before->limits != node().limits) {
        sizeChanged();
    }
    WrapperOf::changed(before, surroundings);
}

QSizeF FrameElement::sizeThatFits(const Proposal& proposal) {
    const Limits widths = widthsOf(node().limits);
    const Limits heights = heightsOf(node().limits);
    const QSizeF size = content().measure(
        {.width = offered(widths, proposal.width), .height = offered(heights, proposal.height)});
    return {taken(widths, proposal.width, size.width()),
            taken(heights, proposal.height, size.height())};
}

void FrameElement::arrange() {
    const QSizeF size =
        content().measure({.width = offered(widthsOf(node().limits), frame().width()),
                           .height = offered(heightsOf(node().limits), frame().height())});
    const auto& alignment = node().limits.alignment;
    const double right = frame().width() - size.width();
    const double down = frame().height() - size.height();
    const QPointF origin(
        scene().snapped(frame().x() + (right * static_cast<int>(alignment.horizontal) / 2)),
        scene().snapped(frame().y() + (down * static_cast<int>(alignment.vertical) / 2)));
    content().place(QRectF(origin, size));
}

template <class Kind>
void LayeredElement<Kind>::arrange() {
    const QRectF& all = this->frame();
    this->content().place(all);
    const QSizeF size = layer_->measure({.width = all.width(), .height = all.height()});
    const Scene& scene = this->scene();
    const QPointF origin(scene.snapped(all.x() + ((all.width() - size.width()) / 2)),
                         scene.snapped(all.y() + ((all.height() - size.height()) / 2)));
    layer_->place(QRectF(origin, size));
}

void BackgroundElement::changed(const ui::Background* before, const Surroundings& surroundings) {
    updateLayer(node().behind, surroundings);
    WrapperOf::changed(before, surroundings);
}

void BackgroundElement::paint(QPainter& painter, const PaintState& state) {
    layer().paint(painter, state);
    content().paint(painter, state);
}

void OverlayElement::changed(const ui::Overlay* before, const Surroundings& surroundings) {
    WrapperOf::changed(before, surroundings);
    updateLayer(node().above, surroundings);
}

void OverlayElement::paint(QPainter& painter, const PaintState& state) {
    content().paint(painter, state);
    layer().paint(painter, state);
}

void ClipElement::changed(const ui::Clip* before, const Surroundings& surroundings) {
    if (before != nullptr && before->outline != node().outline) {
        appearanceChanged();
    }
    WrapperOf::changed(before, surroundings);
}

void ClipElement::paint(QPainter& painter, const PaintState& state) {
    painter.save();
    painter.setClipPath(pathOf(node().outline, shownFrame()), Qt::IntersectClip);
    content().paint(painter, state);
    painter.restore();
}

void HelpElement::changed(const ui::Help* before, const Surroundings& surroundings) {
    Surroundings inside = surroundings;
    inside.help = node().text;
    WrapperOf::changed(before, inside);
}

void AccessibilityLabelElement::changed(const ui::AccessibilityLabel* before,
                                        const Surroundings& surroundings) {
    Surroundings inside = surroundings;
    inside.accessibilityLabel = node().text;
    WrapperOf::changed(before, inside);
}

void AnimatedElement::changed(const ui::Animated* before, const Surroundings& surroundings) {
    if (before == nullptr || before->value == node().value) {
        WrapperOf::changed(before, surroundings);
        return;
    }
    pending_ = scene().begin(node().animation);
    scene().inMotion(pending_, [&] { WrapperOf::changed(before, surroundings); });
}

void AnimatedElement::arrange() {
    if (const auto motion = std::exchange(pending_, nullptr)) {
        scene().inMotion(motion, [this] { WrapperOf::arrange(); });
    } else {
        WrapperOf::arrange();
    }
}

void WithAlertElement::changed(const ui::WithAlert* before, const Surroundings& surroundings) {
    scene().setAlert(node().alert);
    WrapperOf::changed(before, surroundings);
}

} // namespace pelistra::desktop
