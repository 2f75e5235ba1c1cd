#include "platform/linux/windows/WindowFrame.h"

#include "platform/Window.h"
#include "platform/linux/windows/QtConnection.h"
#include "platform/x11/Atoms.h"

#include <array>
#include <cmath>
#include <string_view>

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPen>
#include <QScreen>
#include <QShowEvent>
#include <QWindow>

namespace pelistra::linux {

namespace {

// The close button in the corner of a window without title bar, in points.
constexpr int closeButtonSize = 28;
constexpr int closeButtonMargin = 8;
constexpr double closeCrossInset = 9.5;
constexpr double closeStroke = 1.6;
constexpr double hoverStrength = 0.12;
constexpr double pressedStrength = 0.22;

class CloseButton final : public QAbstractButton {
public:
    explicit CloseButton(QWidget* parent) : QAbstractButton(parent) {
        setFixedSize(closeButtonSize, closeButtonSize);
        setFocusPolicy(Qt::NoFocus);
        setAttribute(Qt::WA_Hover);
        setAccessibleName("关闭");
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QColor ink = palette().color(QPalette::WindowText);
        if (underMouse() || isDown()) {
            QColor field = ink;
            field.setAlphaF(static_cast<float>(isDown() ? pressedStrength : hoverStrength));
            painter.setPen(Qt::NoPen);
            painter.setBrush(field);
            painter.drawEllipse(rect());
        }
        painter.setPen(QPen(ink, closeStroke, Qt::SolidLine, Qt::RoundCap));
        const QRectF cross = QRectF(rect()).adjusted(closeCrossInset, closeCrossInset,
                                                     -closeCrossInset, -closeCrossInset);
        painter.drawLine(cross.topLeft(), cross.bottomRight());
        painter.drawLine(cross.topRight(), cross.bottomLeft());
    }
};

// The application's own, for when no theme has it since the program is not installed.
QIcon ownIcon() {
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128}) {
        icon.addFile(QStringLiteral(":/pelistra/%1.png").arg(side));
    }
    return icon;
}

QSize whole(Size size) {
    return {static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height))};
}

} // namespace

WindowFrame::WindowFrame(Size contentSize, std::uint32_t styleMask,
                         const x11::Connection& connection)
    : styleMask_(styleMask), connection_(connection) {
    if (is(window_style::resizable)) {
        resize(whole(contentSize));
    } else {
        setFixedSize(whole(contentSize));
    }
    setWindowIcon(QIcon::fromTheme("pelistra", ownIcon()));
    updateFrame();
}

void WindowFrame::setTitleHidden(bool hidden) {
    titleHidden_ = hidden;
    updateFrame();
}

void WindowFrame::setTitlebarTransparent(bool transparent) {
    titlebarTransparent_ = transparent;
    updateFrame();
}

void WindowFrame::setContentMinimum(Size size) {
    if (is(window_style::resizable)) {
        setMinimumSize(whole(size));
    }
}

void WindowFrame::updateFrame() {
    const bool isBare =
        titleHidden_ && titlebarTransparent_ && is(window_style::fullSizeContentView);
    const bool isFrameless = isBare || !is(window_style::titled);
    Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint;
    if (isFrameless) {
        // Any hint about a title bar's buttons would bring the bar back.
        flags = Qt::Window | Qt::FramelessWindowHint;
    } else {
        flags |= Qt::WindowTitleHint | Qt::WindowSystemMenuHint;
        flags.setFlag(Qt::WindowCloseButtonHint, is(window_style::closable));
        flags.setFlag(Qt::WindowMinimizeButtonHint, is(window_style::miniaturizable));
        flags.setFlag(Qt::WindowMaximizeButtonHint, is(window_style::resizable));
    }
    setWindowFlags(flags);
    if (isBare && is(window_style::closable) && closeButton_.isNull()) {
        closeButton_ = new CloseButton(this); // NOLINT(*-owning-memory): its parent owns it
        connect(closeButton_, &QAbstractButton::clicked, this, &QWidget::close);
        placeContent();
    }
}

void WindowFrame::centre() {
    const QRect area = screen()->availableGeometry();
    // A third of the free height above, two thirds below.
    constexpr int heightParts = 3;
    move(area.x() + (area.width() - width()) / 2,
         area.y() + (area.height() - height()) / heightParts);
}

void WindowFrame::bringUp() {
    if (isMinimized()) {
        showNormal();
    } else {
        show();
    }
    raise();
    activateWindow();
}

// Comes before the window is mapped; a spontaneous one follows a change from outside, as when the
// user un-minimises it.
void WindowFrame::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) {
        stayOutOfTaskbars();
    }
    QWidget::showEvent(event);
}

void WindowFrame::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (!event->spontaneous() && putAway_) {
        putAway_();
    }
}

// Qt keeps the states that it finds there and adds its own. Window managers take them away from a
// window that is hidden, so they are needed at every showing.
void WindowFrame::stayOutOfTaskbars() {
    xcb_connection_t* const qt = qtConnection();
    if (qt == nullptr || isMinimized()) {
        return;
    }
    const auto [state, skipTaskbar, skipPager] = x11::internAtoms(
        connection_, std::array<std::string_view, 3>{"_NET_WM_STATE", "_NET_WM_STATE_SKIP_TASKBAR",
                                                     "_NET_WM_STATE_SKIP_PAGER"});
    if (state == XCB_ATOM_NONE || skipTaskbar == XCB_ATOM_NONE || skipPager == XCB_ATOM_NONE) {
        return;
    }
    setWords(qt, static_cast<xcb_window_t>(winId()), state, XCB_ATOM_ATOM,
             std::array{skipTaskbar, skipPager});
}

// Closing puts the window away; its owner may show it again.
void WindowFrame::closeEvent(QCloseEvent* event) {
    event->accept();
    if (isActiveWindow()) {
        activateAnother();
    }
}

// Window managers hand the focus on to no window that is out of their taskbar.
void WindowFrame::activateAnother() const {
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const other = dynamic_cast<WindowFrame*>(widget);
        if (other != nullptr && other != this && other->isVisible() && !other->isMinimized()) {
            other->raise();
            other->activateWindow();
            return;
        }
    }
}

void WindowFrame::keyPressEvent(QKeyEvent* event) {
    // What has a title bar goes with Escape too; an assistant is not left by accident.
    const bool isEscape = event->key() == Qt::Key_Escape && closeButton_.isNull();
    if ((isEscape || event->matches(QKeySequence::Close)) && is(window_style::closable)) {
        close();
        return;
    }
    QWidget::keyPressEvent(event);
}

void WindowFrame::mousePressEvent(QMouseEvent* event) {
    if (movable_ && event->button() == Qt::LeftButton && windowHandle() != nullptr) {
        windowHandle()->startSystemMove();
        return;
    }
    QWidget::mousePressEvent(event);
}

void WindowFrame::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeContent();
}

void WindowFrame::setContentWidget(std::unique_ptr<QWidget> content) {
    delete content_;
    content_ = content.release();
    content_->setParent(this);
    placeContent();
    content_->show();
}

void WindowFrame::placeContent() {
    if (content_) {
        content_->setGeometry(rect());
    }
    if (!closeButton_.isNull()) {
        closeButton_->move(width() - closeButtonSize - closeButtonMargin, closeButtonMargin);
        closeButton_->raise();
    }
}

} // namespace pelistra::linux
