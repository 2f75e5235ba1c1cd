#include "platform/linux/windows/ToolTip.h"

#include "platform/linux/windows/QtGeometry.h"

#include <algorithm>
#include <cmath>

#include <QLabel>
#include <QPalette>
#include <QScreen>
#include <QToolTip>

namespace pelistra::linux {

namespace {

// Between the item and the tooltip, and inside the tooltip, in points.
constexpr double gapPoints = 4;
constexpr int padding = 5;
constexpr int sidePadding = 8;

constexpr QColor darkField(0x3a, 0x3a, 0x3c);
constexpr QColor lightField(0xfa, 0xfa, 0xfa);
constexpr QColor lightInk(0xf2, 0xf2, 0xf2);
constexpr QColor darkInk(0x20, 0x20, 0x22);

} // namespace

RootRect toolTipFrame(int width, int height, const RootRect& item, const RootRect& monitor,
                      int gap) {
    const int wishedX = item.x + (item.width - width) / 2;
    const int x = std::max(monitor.x + gap, std::min(wishedX, monitor.right() - gap - width));
    const int below = item.bottom() + gap;
    const int above = item.y - gap - height;
    const int y = below + height <= monitor.bottom() ? below : std::max(monitor.y, above);
    return {.x = x, .y = y, .width = width, .height = height};
}

std::unique_ptr<QLabel> shownToolTip(std::string_view text, const RootRect& item, bool onDark) {
    auto label = std::make_unique<QLabel>(nullptr, Qt::ToolTip);
    label->setAttribute(Qt::WA_ShowWithoutActivating);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    QPalette colours;
    colours.setColor(QPalette::Window, onDark ? darkField : lightField);
    colours.setColor(QPalette::WindowText, onDark ? lightInk : darkInk);
    label->setPalette(colours);
    label->setFont(QToolTip::font());
    label->setTextFormat(Qt::PlainText);
    label->setContentsMargins(sidePadding, padding, sidePadding, padding);
    label->setText(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    label->adjustSize();
    if (const QScreen* const screen = qtScreenAt(item.x + item.width / 2, item.y)) {
        const QSize size = toNative(label->size(), *screen);
        const int gap = static_cast<int>(std::lround(gapPoints * screen->devicePixelRatio()));
        const auto frame =
            toolTipFrame(size.width(), size.height(), item, nativeGeometry(*screen), gap);
        label->move(toQt(frame.x, frame.y, *screen));
        label->show();
    }
    return label;
}

} // namespace pelistra::linux
