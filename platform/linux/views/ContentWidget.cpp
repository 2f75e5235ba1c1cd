#include "platform/linux/views/ContentWidget.h"

#include "platform/linux/views/AlertSheet.h"
#include "platform/linux/views/Fonts.h"
#include "platform/linux/views/Scene.h"
#include "ui/Palette.h"

#include <cmath>
#include <utility>

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPalette>
#include <QToolTip>

namespace pelistra::linux {

namespace {

std::optional<EventType> eventTypeOf(const QMouseEvent& event) {
    const bool isPress =
        event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick;
    if (event.button() == Qt::LeftButton) {
        return isPress ? EventType::LeftMouseDown : EventType::LeftMouseUp;
    }
    if (event.button() == Qt::RightButton) {
        return isPress ? EventType::RightMouseDown : EventType::RightMouseUp;
    }
    return std::nullopt;
}

// Help texts are windows of Qt's own, with one look for the whole program.
void styleHelp(const Look& look) {
    QPalette palette;
    palette.setColor(QPalette::ToolTipBase, resolved(ui::palette::card, look));
    // Qt frames the help in the colour of its text, which is given a colour of its own instead.
    constexpr double frameStrength = 0.2;
    palette.setColor(
        QPalette::ToolTipText,
        mixed(resolved(ui::palette::card, look), resolved(ui::Role::Primary, look), frameStrength));
    palette.setColor(QPalette::Window, resolved(ui::palette::card, look));
    palette.setColor(QPalette::WindowText, resolved(ui::Role::Primary, look));
    QToolTip::setPalette(palette);
    QToolTip::setFont(qtFont({.size = ui::TextStyle::Subheadline}, look));
}

void showHelp(QWidget& widget, const QHelpEvent& event, const Look& look) {
    const QString text = QStringLiteral("<div style=\"color:%1\">%2</div>")
                             .arg(resolved(ui::Role::Primary, look).name(), widget.toolTip());
    QToolTip::showText(event.globalPos(), text, &widget);
}

bool isButtonEvent(QEvent::Type type) {
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick ||
           type == QEvent::MouseButtonRelease;
}

} // namespace

ContentWidget::ContentWidget(std::shared_ptr<ui::Content> content, const ViewServices& services,
                             QWidget* parent)
    : QWidget(parent), content_(std::move(content)), services_(services),
      scene_(std::make_unique<Scene>(*this, services)) {
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::ClickFocus);
    content_->setEnvironment({.reduceMotion = services_.look.get().reduceMotion});
    contentChanges_ = content_->observe([this] { requestRefresh(); });
    lookChanges_ = services_.look.observe([this](const Look& look) {
        services_.mainQueue.async(lifetime_.guard([this, look] { applyLook(look); }));
    });
    styleHelp(services_.look.get());
    scene_->update(content_->body());
    showAlert();
}

ContentWidget::~ContentWidget() = default;

void ContentWidget::setMaterialTranslucent(bool translucent) {
    if (scene_->materialIsTranslucent() != translucent) {
        scene_->setMaterialIsTranslucent(translucent);
        update();
    }
}

QSize ContentWidget::sizeFor(const ui::Proposal& offered) const {
    const Size size = scene_->measure(offered);
    return {static_cast<int>(std::ceil(size.width)), static_cast<int>(std::ceil(size.height))};
}

QSize ContentWidget::sizeHint() const {
    return sizeFor({});
}

QSize ContentWidget::leastSize() const {
    return sizeFor({.width = 0, .height = 0});
}

int ContentWidget::heightFor(int width) const {
    return sizeFor({.width = width}).height();
}

void ContentWidget::requestRefresh() {
    if (!std::exchange(refreshIsPending_, true)) {
        services_.mainQueue.async(lifetime_.guard([this] { refresh(); }));
    }
}

void ContentWidget::refresh() {
    refreshIsPending_ = false;
    scene_->update(content_->body());
    showAlert();
}

void ContentWidget::applyLook(const Look& look) {
    styleHelp(look);
    scene_->lookChanged();
    content_->setEnvironment({.reduceMotion = look.reduceMotion});
}

void ContentWidget::showAlert() {
    const auto& wanted = scene_->alert();
    const bool isWanted = wanted && wanted->isPresented;
    if (alert_ != nullptr && (!isWanted || wanted->occasion != alert_->occasion())) {
        if (alert_->isOpen()) {
            alert_->takeDown();
        }
        alert_->deleteLater();
        alert_ = nullptr;
    }
    if (isWanted && alert_ == nullptr) {
        // NOLINTNEXTLINE(*-owning-memory): this widget owns it
        alert_ = new AlertSheet(*wanted, services_, this);
    }
}

bool ContentWidget::event(QEvent* event) {
    if (isButtonEvent(event->type()) && offerToEventViews(*this, *event)) {
        return true;
    }
    if (event->type() == QEvent::Show) {
        // A panel is never the active window, and has help texts all the same.
        window()->setAttribute(Qt::WA_AlwaysShowToolTips);
        if (window()->focusWidget() == nullptr) {
            setFocus(Qt::OtherFocusReason);
        }
    }
    if (event->type() == QEvent::ScreenChangeInternal) {
        scene_->lookChanged();
    }
    return QWidget::event(event);
}

bool ContentWidget::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr) {
        return false;
    }
    if (isButtonEvent(event->type())) {
        return offerToEventViews(*widget, *event);
    }
    if (event->type() == QEvent::ToolTip && !widget->toolTip().isEmpty()) {
        showHelp(*widget, *static_cast<QHelpEvent*>(event), services_.look.get());
        return true;
    }
    if (event->type() == QEvent::FocusIn) {
        scene_->focusCame(*widget);
    }
    return false;
}

bool ContentWidget::offerToEventViews(QWidget& widget, QEvent& event) {
    const auto& mouse = static_cast<QMouseEvent&>(event);
    const auto type = eventTypeOf(mouse);
    return type && scene_->offer(*type, widget.mapTo(this, mouse.position()));
}

void ContentWidget::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    painter.setClipRegion(event->region());
    scene_->paint(painter, QRectF(event->region().boundingRect()));
}

void ContentWidget::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    scene_->layout();
    if (alert_ != nullptr) {
        alert_->setGeometry(rect());
    }
}

void ContentWidget::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool isHandled = (isReturn && scene_->pressDefaultButton()) ||
                           (event->key() == Qt::Key_Escape && scene_->pressCancelButton());
    if (!isHandled) {
        QWidget::keyPressEvent(event);
    }
}

} // namespace pelistra::linux
