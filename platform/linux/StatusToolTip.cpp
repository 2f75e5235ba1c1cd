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
constexpr int padding = 6;

} // namespace

RootRect toolTipFrame(int width, int height, const RootRect& item, const RootRect& monitor,
                      int gap) {
    const int wishedX = item.x + (item.width - width) / 2;
    const int x = std::max(monitor.x, std::min(wishedX, monitor.right() - width));
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

void StatusToolTip::schedule(const std::shared_ptr<TrayStatusButton>& button, xcb_window_t window) {
    button_ = button;
    window_ = window;
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
    label_ = std::make_unique<QLabel>(nullptr, Qt::ToolTip | Qt::BypassGraphicsProxyWidget);
    label_->setAttribute(Qt::WA_ShowWithoutActivating);
    label_->setAttribute(Qt::WA_TransparentForMouseEvents);
    label_->setPalette(QToolTip::palette());
    label_->setFont(QToolTip::font());
    label_->setTextFormat(Qt::PlainText);
    label_->setFrameStyle(QFrame::Box | QFrame::Plain);
    label_->setMargin(padding);
    label_->setText(QString::fromStdString(button->toolTip()));
    label_->adjustSize();
    const QSize size = toNative(label_->size(), *screen);
    const auto frame =
        toolTipFrame(size.width(), size.height(), *item, nativeGeometry(*screen),
                     static_cast<int>(std::lround(gapPoints * screen->devicePixelRatio())));
    label_->move(toQt(frame.x, frame.y, *screen));
    label_->show();
}

} // namespace pelistra::desktop
