#include "platform/linux/windows/PanelWindow.h"

#include "platform/linux/windows/PanelOutline.h"
#include "platform/linux/windows/QtConnection.h"
#include "platform/x11/Atoms.h"

#include <array>
#include <cmath>
#include <limits>
#include <string_view>

#include <QEvent>
#include <QPainter>
#include <QTimer>
#include <xcb/shape.h>

namespace pelistra::linux {

namespace {

constexpr std::uint32_t allDesktops = std::numeric_limits<std::uint32_t>::max();

// Of the card, for the line around it where there is no shadow.
constexpr int lightestDark = 127;
constexpr int hairlineOnLight = 125;
constexpr int hairlineOnDark = 165;

// The colour just inside the left edge, at half the height.
QColor colourOfCard(const QImage& drawn, const std::vector<QRect>& region) {
    const int y = drawn.height() / 2;
    for (const QRect& rect : region) {
        if (rect.top() <= y && y <= rect.bottom()) {
            constexpr int inside = 3;
            return drawn.pixelColor(std::min(rect.left() + inside, rect.right()), y);
        }
    }
    return Qt::white;
}

} // namespace

PanelAtoms::PanelAtoms(const x11::Connection& connection)
    : atoms_(x11::internAtoms(connection,
                              std::array<std::string_view, NameCount>{
                                  "_NET_WM_STATE", "_NET_WM_STATE_ABOVE", "_NET_WM_STATE_STICKY",
                                  "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER",
                                  "_NET_WM_DESKTOP", "_GTK_FRAME_EXTENTS", "_COMPTON_SHADOW"})),
      hasShapes_(connection.extension(xcb_shape_id) != nullptr) {}

PanelWindow::PanelWindow(const Traits& traits, const PanelAtoms& atoms)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                           Qt::WindowDoesNotAcceptFocus | Qt::NoDropShadowWindowHint),
      traits_(traits), atoms_(atoms) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_X11NetWmWindowTypeUtility);
    // It is never the active window, and Qt shows help texts in that one only.
    setAttribute(Qt::WA_AlwaysShowToolTips);
    if (traits_.isComposited) {
        setAttribute(Qt::WA_TranslucentBackground);
        if (traits_.hasShadow) {
            margins_ = {shadowReachSide, shadowReachTop, shadowReachSide, shadowReachBottom};
        }
    } else {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }
}

void PanelWindow::setContentWidget(QWidget* content) {
    content_ = content;
    content_->setParent(this);
    outlinedSize_ = {};
}

void PanelWindow::place(const QRect& contentFrame) {
    const QRect frame = contentFrame.marginsAdded(margins_);
    setGeometry(frame);
    if (content_ != nullptr) {
        content_->setGeometry(QRect(QPoint(margins_.left(), margins_.top()), contentFrame.size()));
    }
    if (!testAttribute(Qt::WA_WState_Created)) {
        create();
        describeToDesktop();
    }
    updateOutline();
}

void PanelWindow::bringUp() {
    show();
    raise();
}

// The content may learn of it later than this, so the outline is made in the next turn, or at the
// next showing.
void PanelWindow::contentLookChanges() {
    outlinedSize_ = {};
    if (isVisible()) {
        QTimer::singleShot(0, this, [this] { updateOutline(); });
    }
}

void PanelWindow::describeToDesktop() {
    xcb_connection_t* const connection = qtConnection();
    if (connection == nullptr) {
        return;
    }
    const auto window = static_cast<xcb_window_t>(winId());
    // No window manager reads these from a window that it does not look after, but compositors,
    // pagers and accessibility tools do.
    setWords(connection, window, atoms_[PanelAtoms::State], XCB_ATOM_ATOM,
             std::array{atoms_[PanelAtoms::StateAbove], atoms_[PanelAtoms::StateSticky],
                        atoms_[PanelAtoms::StateSkipTaskbar], atoms_[PanelAtoms::StateSkipPager]});
    setWords(connection, window, atoms_[PanelAtoms::Desktop], XCB_ATOM_CARDINAL,
             std::array{allDesktops});
    // It has its own shadow, so compositors are not to add one.
    setWords(connection, window, atoms_[PanelAtoms::CompositorShadow], XCB_ATOM_CARDINAL,
             std::array{std::uint32_t{0}});
}

bool PanelWindow::event(QEvent* event) {
    if (event->type() == QEvent::ScreenChangeInternal) {
        updateOutline();
    }
    return QWidget::event(event);
}

void PanelWindow::updateOutline() {
    const double ratio = devicePixelRatioF();
    if (content_ == nullptr || (size() == outlinedSize_ && ratio == outlinedRatio_)) {
        return;
    }
    outlinedSize_ = size();
    outlinedRatio_ = ratio;
    QImage drawn((QSizeF(size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    drawn.setDevicePixelRatio(ratio);
    drawn.fill(Qt::transparent);
    content_->render(&drawn, content_->pos(), QRegion(), QWidget::DrawChildren);
    const QImage coverage = coverageOf(drawn);
    // Cut along the outline, a pixel is left for the line around it.
    std::vector<QRect> region = regionOf(coverage, traits_.isComposited ? 0 : 1);
    if (region.empty()) {
        region.push_back(drawn.rect());
    }
    if (traits_.isComposited && traits_.hasShadow) {
        shadow_ = shadowAround(coverage, ratio);
    }
    const QColor card = colourOfCard(drawn, region);
    hairline_ = card.lightness() > lightestDark ? card.darker(hairlineOnLight)
                                                : card.lighter(hairlineOnDark);
    setShape(region);
    update();
}

void PanelWindow::setShape(const std::vector<QRect>& region) {
    xcb_connection_t* const connection = qtConnection();
    if (connection == nullptr || !atoms_.hasShapes()) {
        return;
    }
    std::vector<xcb_rectangle_t> rectangles;
    rectangles.reserve(region.size());
    for (const QRect& rect : region) {
        rectangles.push_back({.x = static_cast<std::int16_t>(rect.x()),
                              .y = static_cast<std::int16_t>(rect.y()),
                              .width = static_cast<std::uint16_t>(rect.width()),
                              .height = static_cast<std::uint16_t>(rect.height())});
    }
    const auto kind = traits_.isComposited ? XCB_SHAPE_SK_INPUT : XCB_SHAPE_SK_BOUNDING;
    const auto window = static_cast<xcb_window_t>(winId());
    xcb_shape_rectangles(connection, XCB_SHAPE_SO_SET, static_cast<xcb_shape_kind_t>(kind),
                         XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                         static_cast<std::uint32_t>(rectangles.size()), rectangles.data());
    const auto pixels = [this](int points) {
        return static_cast<std::uint32_t>(std::lround(points * outlinedRatio_));
    };
    setWords(connection, window, atoms_[PanelAtoms::FrameExtents], XCB_ATOM_CARDINAL,
             std::array{pixels(margins_.left()), pixels(margins_.right()), pixels(margins_.top()),
                        pixels(margins_.bottom())});
    xcb_flush(connection);
}

void PanelWindow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    if (!traits_.isComposited) {
        painter.fillRect(rect(), hairline_);
    } else if (!shadow_.isNull()) {
        painter.drawImage(0, 0, shadow_);
    } else {
        painter.fillRect(rect(), Qt::transparent);
    }
}

} // namespace pelistra::linux
