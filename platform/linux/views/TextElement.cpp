#include "platform/linux/views/TextElement.h"

#include "platform/linux/views/Fonts.h"
#include "platform/linux/views/Scene.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <QFontMetricsF>
#include <QPainter>
#include <QTextCharFormat>
#include <QTextLayout>
#include <QTextOption>

namespace pelistra::linux {

namespace {

constexpr double unlimited = std::numeric_limits<float>::max() / 4;

QTextOption optionFor(const ui::Text& text) {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setAlignment(text.multilineAlignment == ui::TextAlignment::Center ? Qt::AlignHCenter
                                                                             : Qt::AlignLeft);
    return option;
}

// The Chinese fonts have one thin command sign for all weights; in a bold heading it falls out of
// line. DejaVu Sans has a bold one.
void setCommandSigns(QTextLayout& layout) {
    if (layout.font().weight() < QFont::DemiBold) {
        return;
    }
    constexpr QChar commandSign(0x2318);
    QTextCharFormat format;
    format.setFontFamilies(QStringList(QStringLiteral("DejaVu Sans")) + layout.font().families());
    QList<QTextLayout::FormatRange> ranges;
    const QString text = layout.text();
    for (auto at = text.indexOf(commandSign); at >= 0; at = text.indexOf(commandSign, at + 1)) {
        ranges.append({.start = static_cast<int>(at), .length = 1, .format = format});
    }
    layout.setFormats(ranges);
}

bool isOneLine(const ui::Text& text) {
    return text.lineLimit == 1;
}

// Breaks the text into lines; returns its size.
Size breakLines(QTextLayout& layout, double width) {
    double height = 0;
    double widest = 0;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        line.setPosition(QPointF(0, height));
        height += std::ceil(line.height());
        widest = std::max(widest, line.naturalTextWidth());
    }
    layout.endLayout();
    return {.width = std::ceil(widest), .height = height};
}

} // namespace

Size textSize(const ui::Text& text, std::optional<double> width, const Look& look) {
    const QFont font = qtFont(text.font, look);
    const double offered = std::clamp(width.value_or(unlimited), 1.0, unlimited);
    QString shown = QString::fromStdString(text.text);
    if (isOneLine(text)) {
        const QFontMetricsF metrics(font);
        return {.width = std::min(std::ceil(metrics.horizontalAdvance(shown)), offered),
                .height = std::ceil(metrics.height())};
    }
    shown.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(shown, font);
    setCommandSigns(layout);
    QTextOption option = optionFor(text);
    option.setAlignment(Qt::AlignLeft);
    layout.setTextOption(option);
    return breakLines(layout, offered);
}

TextElement::~TextElement() {
    delete label_;
}

void TextElement::changed(const ui::View* before, const ui::Placed& now,
                          const Surroundings& surroundings) {
    if (before != nullptr && *before != view()) {
        appearanceChanged();
    }
    if (surroundings.isInControl) {
        // The control is what is read.
        return;
    }
    if (label_.isNull()) {
        label_ = new TextProxy(surroundings.host); // NOLINT(*-owning-memory)
        label_->show();
    }
    label_->setContent(QString::fromStdString(node().text), now.accessibilityLabel, now.help);
    label_->setGeometry(frame().toAlignedRect());
}

void TextElement::paint(QPainter& painter, const PaintState& state) {
    const QRectF area = shownFrame();
    if (!area.intersects(state.dirty)) {
        return;
    }
    const QFont font = qtFont(node().font, state.look);
    const auto& foreground = node().foreground;
    const QColor color = foreground ? resolved(*foreground, state.look) : state.foreground;
    QString shown = QString::fromStdString(node().text);
    if (isOneLine(node())) {
        shown = QFontMetricsF(font).elidedText(shown.replace(u'\n', u' '), Qt::ElideRight,
                                               area.width() + 0.5);
    }
    shown.replace(u'\n', QChar::LineSeparator);
    QTextLayout layout(shown, font);
    if (!isOneLine(node())) {
        setCommandSigns(layout);
    }
    layout.setTextOption(optionFor(node()));
    // A little more than measured, so that rounding does not break a line that has fitted.
    breakLines(layout, isOneLine(node()) ? unlimited : area.width() + 0.01);
    painter.setPen(color);
    layout.draw(&painter, area.topLeft());
}

} // namespace pelistra::linux
