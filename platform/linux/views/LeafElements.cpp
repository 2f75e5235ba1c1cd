#include "platform/linux/views/LeafElements.h"

#include "platform/linux/views/Outlines.h"
#include "platform/linux/views/Scene.h"
#include "platform/linux/windows/QtPictures.h"
#include "ui/Palette.h"

#include <algorithm>
#include <cmath>
#include <variant>

#include <QPainter>
#include <QPen>

namespace pelistra::linux {

namespace {

constexpr double dividerOpacity = 0.14;
// How much shines through a material.
constexpr double materialOpacity = 0.8;

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

void SymbolElement::changed(const ui::View* before, const ui::Placed& /*now*/,
                            const Surroundings& /*surroundings*/) {
    if (before != nullptr && *before != view()) {
        appearanceChanged();
    }
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

void PictureElement::changed(const ui::View* before, const ui::Placed& /*now*/,
                             const Surroundings& /*surroundings*/) {
    if (before != nullptr && *before != view()) {
        pixels_ = QImage();
        appearanceChanged();
    }
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

// Lines

void DividerElement::paint(QPainter& painter, const PaintState& state) {
    // One device pixel wide, on a device pixel.
    QRectF line = shownFrame();
    const double hair = 1 / scene().scale();
    if (line.height() > line.width()) {
        line =
            QRectF(scene().snapped(line.center().x() - (hair / 2)), line.y(), hair, line.height());
    } else {
        line =
            QRectF(line.x(), scene().snapped(line.center().y() - (hair / 2)), line.width(), hair);
    }
    painter.fillRect(line, resolved(ui::Role::Primary, state.look, dividerOpacity));
}

// Shapes

void FilledShapeElement::changed(const ui::View* before, const ui::Placed& /*now*/,
                                 const Surroundings& /*surroundings*/) {
    if (before == nullptr || *before == view()) {
        return;
    }
    fillBefore_.reset();
    if (joinMotion()) {
        fillBefore_ = before->as<ui::FilledShape>()->fill;
    }
    appearanceChanged();
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

void StrokedShapeElement::changed(const ui::View* before, const ui::Placed& /*now*/,
                                  const Surroundings& /*surroundings*/) {
    if (before != nullptr && *before != view()) {
        appearanceChanged();
    }
}

void StrokedShapeElement::paint(QPainter& painter, const PaintState& state) {
    constexpr double miterLimit = 10;
    QPen pen(resolved(node().color, state.look), node().lineWidth, Qt::SolidLine, Qt::FlatCap,
             Qt::MiterJoin);
    pen.setMiterLimit(miterLimit);
    painter.strokePath(pathOf(node().outline, shownFrame()), pen);
}

} // namespace pelistra::linux
