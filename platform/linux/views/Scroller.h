#pragma once

#include <functional>
#include <memory>

#include <QPointer>
#include <QRectF>
#include <QVariantAnimation>
#include <QWidget>

class QWheelEvent;

namespace pelistra::linux {

// A viewport widget and, inside it, the widget that holds what is scrolled: the host of all that
// is in it. Both draw nothing. Wheels of both directions and touch pads scroll it, keys that its
// controls leave over too, and whatever gets the focus comes into view.
class Scroller {
public:
    // `moved` is called after every change of the offset.
    Scroller(Qt::Orientation orientation, QWidget* parent, std::function<void()> moved);
    Scroller(const Scroller&) = delete;
    Scroller& operator=(const Scroller&) = delete;
    ~Scroller();

    [[nodiscard]] QWidget* viewport() const { return viewport_; }
    [[nodiscard]] QWidget* content() const { return content_; }

    // Places the viewport and tells the size of what is scrolled.
    void setGeometry(const QRectF& viewport, const QSizeF& contentSize);
    // How far it is scrolled, in points.
    [[nodiscard]] double offset() const { return offset_; }
    [[nodiscard]] double furthest() const { return furthest_; }
    void scrollTo(double offset);
    // With a short slide, unless motion is to be avoided.
    void slideTo(double offset, bool reduceMotion);

    void wheel(const QWheelEvent& event, bool reduceMotion);
    // False when the key does not scroll.
    [[nodiscard]] bool key(int key, bool reduceMotion);
    void bringIntoView(const QWidget& widget, bool reduceMotion);

private:
    [[nodiscard]] double along(const QSizeF& size) const;

    Qt::Orientation orientation_;
    QPointer<QWidget> viewport_;
    QPointer<QWidget> content_;
    std::function<void()> moved_;
    QVariantAnimation slide_;
    double offset_ = 0;
    double furthest_ = 0;
    double page_ = 0;
    // Where a slide goes to.
    double target_ = 0;
};

} // namespace pelistra::linux
