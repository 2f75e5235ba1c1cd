#include "platform/linux/views/AlertSheet.h"

#include "platform/linux/views/ContentWidget.h"
#include "platform/linux/views/Metrics.h"
#include "platform/linux/views/Outlines.h"
#include "ui/Palette.h"

#include <algorithm>
#include <utility>

#include <QKeyEvent>
#include <QPainter>
#include <QPen>

namespace pelistra::linux {

namespace {

constexpr int cardWidth = 300;
constexpr double cardRadius = 16;
constexpr double dimming = 0.28;

class AlertContent final : public ui::Content {
public:
    AlertContent(ui::Alert alert, std::function<void()> press)
        : alert_(std::move(alert)), press_(std::move(press)) {}

    [[nodiscard]] ui::View body() override {
        const ui::View title = ui::Text{.text = alert_.title,
                                        .font = {.size = ui::TextStyle::Headline},
                                        .multilineAlignment = ui::TextAlignment::Center};
        const ui::View message = ui::Text{.text = alert_.message,
                                          .font = {.size = ui::TextStyle::Subheadline},
                                          .foreground = ui::Color{.base = ui::Role::Secondary},
                                          .multilineAlignment = ui::TextAlignment::Center};
        const ui::View words =
            ui::VStack{.spacing = ui::spacing::small, .children = {title, message}};
        const ui::View button = ui::Button{.label = ui::Text{.text = alert_.button.label},
                                           .action = press_,
                                           .style = ui::ButtonStyle::BorderedProminent,
                                           .role = ui::ButtonRole::Cancel,
                                           .size = ui::ControlSize::Large,
                                           .isDefaultAction = true};
        return ui::View(ui::VStack{.spacing = ui::spacing::large, .children = {words, button}})
            .padding(ui::Edges::all(ui::spacing::large));
    }

protected:
    [[nodiscard]] std::vector<SubscriptionPtr>
    observeState(const std::function<void()>& /*changed*/) override {
        return {};
    }

private:
    ui::Alert alert_;
    std::function<void()> press_;
};

} // namespace

AlertSheet::AlertSheet(const ui::Alert& alert, const ViewServices& services, QWidget* parent)
    : QWidget(parent), alert_(alert), services_(services), focusedBefore_(parent->focusWidget()) {
    setAccessibleName(QString::fromStdString(alert.title));
    // NOLINTNEXTLINE(*-owning-memory): this widget owns it
    content_ = new ContentWidget(std::make_shared<AlertContent>(alert, [this] { press(); }),
                                 services, this);
    setGeometry(parent->rect());
    show();
    raise();
    content_->setFocus(Qt::OtherFocusReason);
}

QRect AlertSheet::cardArea() const {
    const int width = std::min(cardWidth, this->width());
    const int height = std::min(content_->heightFor(width), this->height());
    return {(this->width() - width) / 2, (this->height() - height) / 2, width, height};
}

void AlertSheet::press() {
    const ui::Action action = alert_.button.action;
    takeDown();
    action();
}

void AlertSheet::takeDown() {
    isOpen_ = false;
    hide();
    if (focusedBefore_) {
        focusedBefore_->setFocus(Qt::OtherFocusReason);
    }
}

void AlertSheet::paintEvent(QPaintEvent* /*event*/) {
    const Look& look = services_.look.get();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), withOpacity(Qt::black, dimming));
    const QRectF card(cardArea());
    const ui::RoundedRectangle outline = {.cornerRadius = cardRadius};
    constexpr int shadowSteps = 8;
    constexpr double shadowOpacity = 0.02;
    for (int step = shadowSteps; step > 0; --step) {
        painter.fillPath(pathOf(ui::RoundedRectangle{.cornerRadius = cardRadius + step},
                                card.adjusted(-step, 2 - step, step, 4 + step)),
                         withOpacity(Qt::black, shadowOpacity));
    }
    painter.fillPath(pathOf(outline, card), resolved(ui::palette::card, look));
    painter.strokePath(pathOf(outline, card),
                       QPen(resolved(ui::Role::Primary, look, metrics::borderOpacity), 1));
}

void AlertSheet::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    content_->setGeometry(cardArea());
}

// Nothing behind the alert gets a key while it is there.
void AlertSheet::keyPressEvent(QKeyEvent* event) {
    event->accept();
}

} // namespace pelistra::linux
