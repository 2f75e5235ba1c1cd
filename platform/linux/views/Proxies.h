#pragma once

#include <functional>
#include <string>

#include <QCheckBox>
#include <QFocusEvent>
#include <QLabel>
#include <QPushButton>
#include <QString>

namespace pelistra::linux {

// Widgets that draw nothing: they stand where the content widget has drawn a control or a text, and
// give it Qt's focus, keyboard, pointer and accessibility.

// The help text of a widget; plain, wrapped, line breaks kept, and cut when it is longer than
// anybody reads.
void setHelp(QWidget& widget, const std::string& help);

// A text to be read aloud. The pointer passes through it, unless it has a help text.
class TextProxy final : public QLabel {
public:
    explicit TextProxy(QWidget* parent);

    // The label is what is read instead of the text, when it is not empty.
    void setContent(const QString& text, const std::string& label, const std::string& help);

protected:
    void paintEvent(QPaintEvent* /*event*/) override {}
};

// A widget of a control, which tells when it has to be drawn again.
template <class Base>
class ControlProxy : public Base {
public:
    explicit ControlProxy(QWidget* parent, std::function<void()> stateChanged)
        : Base(parent), stateChanged_(std::move(stateChanged)) {
        this->setAttribute(Qt::WA_NoSystemBackground);
        this->setFocusPolicy(Qt::StrongFocus);
        QObject::connect(this, &QAbstractButton::pressed, this, [this] { tell(); });
        QObject::connect(this, &QAbstractButton::released, this, [this] { tell(); });
    }

    // Takes it away for good; from now on it tells nothing but its end, by which Qt's accessibility
    // forgets it. It is deleted later, since it may be the one whose event is being handled.
    void retire() {
        stateChanged_ = nullptr;
        this->hide();
        this->blockSignals(true);
        this->deleteLater();
    }

    // Whether the keyboard has brought the focus here.
    [[nodiscard]] bool showsFocus() const { return showsFocus_ && this->hasFocus(); }
    [[nodiscard]] bool isHovered() const { return isHovered_; }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {}
    // The whole area answers to the pointer, not only where a style would draw.
    [[nodiscard]] bool hitButton(const QPoint& point) const override {
        return this->rect().contains(point);
    }
    void enterEvent(QEnterEvent* event) override {
        isHovered_ = true;
        Base::enterEvent(event);
        tell();
    }
    void leaveEvent(QEvent* event) override {
        isHovered_ = false;
        Base::leaveEvent(event);
        tell();
    }
    void focusInEvent(QFocusEvent* event) override {
        showsFocus_ = event->reason() == Qt::TabFocusReason ||
                      event->reason() == Qt::BacktabFocusReason ||
                      event->reason() == Qt::ShortcutFocusReason;
        Base::focusInEvent(event);
        tell();
    }
    void focusOutEvent(QFocusEvent* event) override {
        Base::focusOutEvent(event);
        tell();
    }

    void tell() const {
        if (stateChanged_) {
            stateChanged_();
        }
    }

private:
    std::function<void()> stateChanged_;
    bool showsFocus_ = false;
    bool isHovered_ = false;
};

class ButtonProxy final : public ControlProxy<QPushButton> {
public:
    using ControlProxy::ControlProxy;
};

// A switch. Its own state is only that of the value, whatever the user does: the handler is told
// the state that was asked for.
class ToggleProxy final : public ControlProxy<QCheckBox> {
public:
    ToggleProxy(QWidget* parent, std::function<void()> stateChanged,
                std::function<void(bool)> moved);

protected:
    void nextCheckState() override;

private:
    std::function<void(bool)> moved_;
};

} // namespace pelistra::linux
