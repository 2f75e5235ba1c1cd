#pragma once

#include "platform/linux/views/Element.h"
#include "platform/linux/views/Proxies.h"
#include "ui/Nodes.h"

#include <QPointer>

namespace pelistra::linux {

// The size of a text in lines no longer than the width, or unbroken, in whole points.
[[nodiscard]] Size textSize(const ui::Text& text, std::optional<double> width, const Look& look);

// A text, and outside of controls the label that a screen reader finds at its place.
class TextElement final : public ElementOf<ui::Text> {
public:
    using ElementOf::ElementOf;
    TextElement(const TextElement&) = delete;
    TextElement& operator=(const TextElement&) = delete;
    ~TextElement() override;

    void paint(QPainter& painter, const PaintState& state) override;
    [[nodiscard]] QWidget* widget() const override { return label_; }

protected:
    void changed(const ui::View* before, const ui::Placed& now,
                 const Surroundings& surroundings) override;
    [[nodiscard]] bool draws() const override { return true; }

private:
    QPointer<TextProxy> label_;
};

} // namespace pelistra::linux
