#pragma once

#include "platform/linux/views/Element.h"
#include "ui/Nodes.h"

#include <optional>

#include <QImage>

namespace pelistra::linux {

class SymbolElement final : public ElementOf<ui::Symbol> {
public:
    using ElementOf::ElementOf;
    void paint(QPainter& painter, const PaintState& state) override;

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;
    [[nodiscard]] bool draws() const override { return true; }
};

class PictureElement final : public ElementOf<ui::Picture> {
public:
    using ElementOf::ElementOf;
    void paint(QPainter& painter, const PaintState& state) override;
    void lookChanged() override { pixels_ = QImage(); }

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;
    [[nodiscard]] bool draws() const override { return true; }

private:
    // The picture scaled to that many device pixels.
    const QImage& pixels(const QSize& size, const QColor& label);

    QImage pixels_;
};

class DividerElement final : public ElementOf<ui::Divider> {
public:
    using ElementOf::ElementOf;
    void paint(QPainter& painter, const PaintState& state) override;

protected:
    [[nodiscard]] bool draws() const override { return true; }
};

class FilledShapeElement final : public ElementOf<ui::FilledShape> {
public:
    using ElementOf::ElementOf;
    void paint(QPainter& painter, const PaintState& state) override;

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;
    [[nodiscard]] bool draws() const override { return true; }

private:
    [[nodiscard]] QBrush brush(const QRectF& area, const Look& look) const;

    // The fill on its way out during an animated change.
    std::optional<ui::Paint> fillBefore_;
};

class StrokedShapeElement final : public ElementOf<ui::StrokedShape> {
public:
    using ElementOf::ElementOf;
    void paint(QPainter& painter, const PaintState& state) override;

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;
    [[nodiscard]] bool draws() const override { return true; }
    [[nodiscard]] double drawingMargin() const override { return node().lineWidth; }
};

} // namespace pelistra::linux
