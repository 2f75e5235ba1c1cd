#include "platform/linux/StatusToolTip.h"

#include "platform/linux/QtGeometry.h"
#include "platform/linux/RootFrame.h"
#include "platform/linux/TrayStatusButton.h"

#include <algorithm>
#include <cmath>

#include <QLabel>
#include <QScreen>
#include <QToolTip>

namespace pelistra::desktop {

namespace {

// Between the item and the tooltip, and inside the tooltip, in points.
constexpr double gapPoints = 4;
constexpr int padding = 5;
constexpr int sidePadding = 8;

constexpr int lightestDark = 127;
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

StatusToolTip::StatusToolTip(const x11::Connection& connection) : connection_(connection) {
    timer_.setSingleShot(true);
    timer_.setInterval(delay);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { show(); });
}

StatusToolTip::~StatusToolTip() = default;

void StatusToolTip::schedule(const std::shared_ptr<TrayStatusButton>& button, xcb_window_t window,
                             const QColor& foreground) {
    button_ = button;
    window_ = window;
    foreground_ = foreground;
    timer_.start();
}

void StatusToolTip::hide() {
    timer_.stop();
    label_.reset();
}

void StatusToolTip::show() {
    const auto button = button_.lock();
    const auto item = rootFrameOf(connection_, window_);
    if (!button || button->toolTip().empty() || !item) {
        return;
    }
    QScreen* const screen = qtScreenAt(item->x + item->width / 2, item->y);
    if (screen == nullptr) {
        return;
    }
    label_ = makeLabel(QString::fromStdString(button->toolTip()));
    const QSize size = toNative(label_->size(), *screen);
    const auto frame =
        toolTipFrame(size.width(), size.height(), *item, nativeGeometry(*screen),
                     static_cast<int>(std::lround(gapPoints * screen->devicePixelRatio())));
    label_->move(toQt(frame.x, frame.y, *screen));
    label_->show();
}

std::unique_ptr<QLabel> StatusToolTip::makeLabel(const QString& text) const {
    auto label = std::make_unique<QLabel>(nullptr, Qt::ToolTip);
    label->setAttribute(Qt::WA_ShowWithoutActivating);
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    const bool isDark = foreground_.lightness() > lightestDark;
    QPalette colours;
    colours.setColor(QPalette::Window, isDark ? darkField : lightField);
    colours.setColor(QPalette::WindowText, isDark ? lightInk : darkInk);
    label->setPalette(colours);
    label->setFont(QToolTip::font());
    label->setTextFormat(Qt::PlainText);
    label->setContentsMargins(sidePadding, padding, sidePadding, padding);
    label->setText(text);
    label->adjustSize();
    return label;
}

} // namespace pelistra::desktop
