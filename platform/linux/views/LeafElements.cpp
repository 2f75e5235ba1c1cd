#include "platform/linux/views/LeafElements.h"

#include "platform/linux/QtImages.h"
#include "platform/linux/Symbols.h"
#include "platform/linux/views/Outlines.h"
#include "platform/linux/views/Scene.h"
#include "ui/Palette.h"

#include <algorithm>
#include <cmath>
#include <variant>

#include <QPainter>
#include <QPen>

namespace pelistra::desktop {

namespace {

// What a view without a size of its own takes where it is offered none.
constexpr double sizeWithoutOffer = 10;
constexpr double dividerOpacity = 0.14;
// How much shines through a material.
constexpr double materialOpacity = 0.8;

QSizeF whatIsOffered(const Proposal& proposal) {
    return {proposal.width.value_or(sizeWithoutOffer), proposal.height.value_or(sizeWithoutOffer)};
}

bool isWeighty(ui::Weight weight) {
    return weight == ui::Weight::Semibold || weight == ui::Weight::Bold;
}

double strokeFactor(ui::Weight weight) {
    constexpr double heavy = 1.2;
    constexpr double light = 0.92;
    return isWeighty(weight) ? heavy : weight == ui::Weight::Medium ? 1 : light;
}

} // namespace

// Symbols

void SymbolElement::changed(const ui::Symbol* before, const Surroundings& /*surroundings*/) {
    if (before == nullptr || before->name != node().name || before->font != node().font) {
        sizeChanged();
    }
    if (before != nullptr && *before != node()) {
        appearanceChanged();
    }
}

QSizeF SymbolElement::sizeThatFits(const Proposal& /*proposal*/) {
    const auto symbol = symbolNamed(node().name);
    if (!symbol) {
        return {};
    }
    const double factor = ui::pointSize(node().font, scene().look().bodySize) / symbolTextSize;
    return {std::ceil(symbol->width * factor), std::ceil(symbol->height * factor)};
}

void SymbolElement::paint(QPainter& painter, const PaintState& state) {
    const auto symbol = symbolNamed(node().name);
    const QRectF area = shownFrame();
    if (!symbol || !area.intersects(state.dirty)) {
        return;
    }
    const double factor = ui::pointSize(node().font, state.look.bodySize) / symbolTextSize;
    painter.save();
    painter.translate(area.center() - (QPointF(symbol->width, symbol->height) * (factor / 2)));
    painter.scale(factor, factor);
    const auto& foreground = node().foreground;
    draw(*symbol, painter, foreground ? resolved(*foreground, state.look) : state.foreground,
         strokeFactor(ui::effectiveWeight(node().font)));
    painter.restore();
}

// Pictures

void PictureElement::changed(const ui::Picture* before, const Surroundings& /*surroundings*/) {
    if (before == nullptr || *before != node()) {
        pixels_ = QImage();
        sizeChanged();
        appearanceChanged();
    }
}

QSizeF PictureElement::sizeThatFits(const Proposal& proposal) {
    if (!node().image) {
        return {};
    }
    const Size nominal = node().image->size();
    if (nominal.width <= 0 || nominal.height <= 0) {
        return {};
    }
    const double factor =
        std::min(proposal.width ? *proposal.width / nominal.width : ui::infinity,
                 proposal.height ? *proposal.height / nominal.height : ui::infinity);
    const double used = std::isfinite(factor) ? factor : 1;
    return {nominal.width * used, nominal.height * used};
}

const QImage& PictureElement::pixels(const QSize& size, const QColor& label) {
    if (pixels_.size() == size) {
        return pixels_;
    }
    // Enlarged, or drawn at just the right size, in one step; made smaller from its own pixels by
    // averaging them, since sampling a few of them looks ragged.
    constexpr double mostPixels = 1024;
    const Size nominal = node().image->size();
    const double wanted = size.width() / nominal.width;
    const double own =
        std::min(scene().scale(), mostPixels / std::max(nominal.width, nominal.height));
    pixels_ = rendered(*node().image, std::max(wanted, own), label);
    if (!pixels_.isNull() && pixels_.size() != size) {
        pixels_ = pixels_.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return pixels_;
}

void PictureElement::paint(QPainter& painter, const PaintState& state) {
    const QRectF area = shownFrame();
    if (!node().image || !area.intersects(state.dirty)) {
        return;
    }
    const double scale = scene().scale();
    const QSize size(std::max(1, static_cast<int>(std::lround(area.width() * scale))),
                     std::max(1, static_cast<int>(std::lround(area.height() * scale))));
    const QImage& image = pixels(size, state.foreground);
    if (image.isNull()) {
        return;
    }
    // On whole device pixels, wherever the surroundings have been moved to.
    const QPointF at = painter.deviceTransform().map(area.topLeft());
    const QPointF shift = (QPointF(std::round(at.x()), std::round(at.y())) - at) / scale;
    const QRectF target(area.topLeft() + shift,
                        QSizeF(image.width() / scale, image.height() / scale));
    painter.drawImage(target, image);
}

// Space and lines

void SpacerElement::changed(const ui::Spacer* /*before*/, const Surroundings& surroundings) {
    axis_ = surroundings.stack;
}

QSizeF SpacerElement::sizeThatFits(const Proposal& proposal) {
    const double width = axis_ == Axis::Vertical ? 0 : proposal.width.value_or(0);
    const double height = axis_ == Axis::Horizontal ? 0 : proposal.height.value_or(0);
    return {width, height};
}

void DividerElement::changed(const ui::Divider* before, const Surroundings& surroundings) {
    const bool isVertical = surroundings.stack == Axis::Horizontal;
    if (before == nullptr || isVertical != isVertical_) {
        isVertical_ = isVertical;
        sizeChanged();
    }
}

QSizeF DividerElement::sizeThatFits(const Proposal& proposal) {
    const QSizeF offered = whatIsOffered(proposal);
    return isVertical_ ? QSizeF(1, offered.height()) : QSizeF(offered.width(), 1);
}

void DividerElement::paint(QPainter& painter, const PaintState& state) {
    // One device pixel wide, on a device pixel.
    QRectF line = shownFrame();
    const double hair = 1 / scene().scale();
    if (isVertical_) {
        line =
            QRectF(scene().snapped(line.center().x() - (hair / 2)), line.y(), hair, line.height());
    } else {
        line =
            QRectF(line.x(), scene().snapped(line.center().y() - (hair / 2)), line.width(), hair);
    }
    painter.fillRect(line, resolved(ui::Role::Primary, state.look, dividerOpacity));
}

// Shapes

void FilledShapeElement::changed(const ui::FilledShape* before,
                                 const Surroundings& /*surroundings*/) {
    if (before == nullptr || *before == node()) {
        return;
    }
    fillBefore_.reset();
    if (joinMotion()) {
        fillBefore_ = before->fill;
    }
    appearanceChanged();
}

QSizeF FilledShapeElement::sizeThatFits(const Proposal& proposal) {
    return whatIsOffered(proposal);
}

QBrush FilledShapeElement::brush(const QRectF& area, const Look& look) const {
    if (const auto* gradient = std::get_if<ui::LinearGradient>(&node().fill)) {
        return resolved(*gradient, area, look);
    }
    if (std::holds_alternative<ui::Material>(node().fill)) {
        const double opacity = scene().materialIsTranslucent() ? materialOpacity : 1;
        return withOpacity(resolved(ui::palette::panel, look), opacity);
    }
    const QColor color = resolved(std::get<ui::Color>(node().fill), look);
    const double progress = motionProgress();
    const auto* from = fillBefore_ ? std::get_if<ui::Color>(&*fillBefore_) : nullptr;
    return from != nullptr && progress < 1 ? mixed(resolved(*from, look), color, progress) : color;
}

void FilledShapeElement::paint(QPainter& painter, const PaintState& state) {
    const QRectF area = shownFrame();
    if (area.intersects(state.dirty)) {
        painter.fillPath(pathOf(node().outline, area), brush(area, state.look));
    }
}

void StrokedShapeElement::changed(const ui::StrokedShape* before,
                                  const Surroundings& /*surroundings*/) {
    if (before != nullptr && *before != node()) {
        appearanceChanged();
    }
}

QSizeF StrokedShapeElement::sizeThatFits(const Proposal& proposal) {
    return whatIsOffered(proposal);
}

void StrokedShapeElement::paint(QPainter& painter, const PaintState& state) {
    constexpr double miterLimit = 10;
    QPen pen(resolved(node().color, state.look), node().lineWidth, Qt::SolidLine, Qt::FlatCap,
             Qt::MiterJoin);
    pen.setMiterLimit(miterLimit);
    painter.strokePath(pathOf(node().outline, shownFrame()), pen);
}

} // namespace pelistra::desktop
