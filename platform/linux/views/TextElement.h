#pragma once

#include "platform/linux/views/Element.h"
#include "platform/linux/views/Proxies.h"
#include "ui/Nodes.h"

#include <vector>

#include <QPointer>
#include <QString>

class QTextLayout;

namespace pelistra::desktop {

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
    void changed(const ui::Text* before, const Surroundings& surroundings) override;
    [[nodiscard]] QSizeF sizeThatFits(const Proposal& proposal) override;
    void arrange() override;
    [[nodiscard]] bool draws() const override { return true; }

private:
    // Breaks the text into lines; returns its size.
    QSizeF breakLines(QTextLayout& layout, double width) const;
    [[nodiscard]] bool isOneLine() const { return node().lineLimit == 1; }

    QString text_;
    QPointer<TextProxy> label_;
};

} // namespace pelistra::desktop
