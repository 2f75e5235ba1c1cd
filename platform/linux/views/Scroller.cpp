#include "platform/linux/views/Scroller.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QWheelEvent>

namespace pelistra::linux {

namespace {

constexpr int slideMilliseconds = 140;
// What one step of a wheel scrolls, in points; a step is 120 units of Qt.
constexpr double wheelStep = 72;
constexpr double unitsPerStep = 120;
constexpr double keyStep = 48;
constexpr double pagePart = 0.9;
constexpr double airAroundFocus = 12;

} // namespace

Scroller::Scroller(Qt::Orientation orientation, QWidget* parent, std::function<void()> moved)
    // NOLINTNEXTLINE(*-owning-memory): deleted by the destructor, or by the parent before
    : orientation_(orientation), viewport_(new QWidget(parent)), content_(new QWidget(viewport_)),
      moved_(std::move(moved)) {
    viewport_->setAttribute(Qt::WA_NoSystemBackground);
    content_->setAttribute(Qt::WA_NoSystemBackground);
    viewport_->show();
    slide_.setDuration(slideMilliseconds);
    slide_.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(&slide_, &QVariantAnimation::valueChanged, &slide_,
                     [this](const QVariant& value) { scrollTo(value.toDouble()); });
}

Scroller::~Scroller() {
    slide_.stop();
    if (viewport_) {
        viewport_->hide();
        viewport_->deleteLater();
    }
}

double Scroller::along(const QSizeF& size) const {
    return orientation_ == Qt::Horizontal ? size.width() : size.height();
}

void Scroller::setGeometry(const QRectF& viewport, const QSizeF& contentSize) {
    viewport_->setGeometry(viewport.toAlignedRect());
    content_->resize(static_cast<int>(std::ceil(contentSize.width())),
                     static_cast<int>(std::ceil(contentSize.height())));
    page_ = along(viewport.size());
    furthest_ = std::max(0.0, along(contentSize) - page_);
    if (offset_ > furthest_) {
        slide_.stop();
        scrollTo(furthest_);
    }
    target_ = std::min(target_, furthest_);
}

void Scroller::scrollTo(double offset) {
    const double bounded = std::clamp(std::round(offset), 0.0, std::floor(furthest_ + 0.5));
    if (slide_.state() != QAbstractAnimation::Running) {
        target_ = bounded;
    }
    if (bounded == offset_) {
        return;
    }
    offset_ = bounded;
    const int place = -static_cast<int>(std::lround(offset_));
    content_->move(orientation_ == Qt::Horizontal ? QPoint(place, 0) : QPoint(0, place));
    moved_();
}

void Scroller::slideTo(double offset, bool reduceMotion) {
    const double wanted = std::clamp(offset, 0.0, furthest_);
    slide_.stop();
    target_ = wanted;
    if (reduceMotion || !viewport_->isVisible()) {
        scrollTo(wanted);
        return;
    }
    slide_.setStartValue(offset_);
    slide_.setEndValue(wanted);
    slide_.start();
}

void Scroller::wheel(const QWheelEvent& event, bool reduceMotion) {
    const QPoint pixels = event.pixelDelta();
    const auto larger = [](const QPoint& delta) {
        return std::abs(delta.x()) > std::abs(delta.y()) ? delta.x() : delta.y();
    };
    const bool isSideways = orientation_ == Qt::Horizontal;
    if (!pixels.isNull()) {
        slide_.stop();
        scrollTo(offset_ - (isSideways ? larger(pixels) : pixels.y()));
        return;
    }
    const QPoint angle = event.angleDelta();
    const double steps = (isSideways ? larger(angle) : angle.y()) / unitsPerStep;
    slideTo(target_ - (steps * wheelStep), reduceMotion);
}

bool Scroller::key(int key, bool reduceMotion) {
    const bool isSideways = orientation_ == Qt::Horizontal;
    if (key == Qt::Key_Home) {
        slideTo(0, reduceMotion);
    } else if (key == Qt::Key_End) {
        slideTo(furthest_, reduceMotion);
    } else if (key == Qt::Key_PageUp) {
        slideTo(target_ - (page_ * pagePart), reduceMotion);
    } else if (key == Qt::Key_PageDown) {
        slideTo(target_ + (page_ * pagePart), reduceMotion);
    } else if (key == (isSideways ? Qt::Key_Left : Qt::Key_Up)) {
        slideTo(target_ - keyStep, reduceMotion);
    } else if (key == (isSideways ? Qt::Key_Right : Qt::Key_Down)) {
        slideTo(target_ + keyStep, reduceMotion);
    } else {
        return false;
    }
    return true;
}

void Scroller::bringIntoView(const QWidget& widget, bool reduceMotion) {
    const QRect area(widget.mapTo(content_, QPoint(0, 0)), widget.size());
    const bool isSideways = orientation_ == Qt::Horizontal;
    const double begin = (isSideways ? area.left() : area.top()) - airAroundFocus;
    const double end =
        (isSideways ? area.left() + area.width() : area.top() + area.height()) + airAroundFocus;
    if (begin < target_) {
        slideTo(begin, reduceMotion);
    } else if (end > target_ + page_) {
        slideTo(end - page_, reduceMotion);
    }
}

} // namespace pelistra::linux
