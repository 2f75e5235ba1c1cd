#pragma once

#include "base/Lifetime.h"
#include "base/Subscription.h"
#include "platform/linux/views/ViewServices.h"
#include "ui/Content.h"
#include "ui/Measures.h"

#include <memory>

#include <QWidget>

namespace pelistra::linux {

class AlertSheet;
class Scene;

// Shows a content, over the whole of this widget, with a transparent background, inside whatever
// window. One Qt unit is one point.
//
// Everything is drawn by this widget. Whatever a user can reach (buttons, switches, scrolled areas)
// and whatever a screen reader reads has an invisible widget of Qt's own kind at its place, so that
// focus, keyboard, pointer and accessibility are Qt's. What is equal to the body before is not
// drawn again.
class ContentWidget final : public QWidget {
public:
    ContentWidget(std::shared_ptr<ui::Content> content, const ViewServices& services,
                  QWidget* parent = nullptr);
    ContentWidget(const ContentWidget&) = delete;
    ContentWidget& operator=(const ContentWidget&) = delete;
    ~ContentWidget() override;

    // Whether what lies behind the window shines through materials. Off at first: then they are
    // opaque.
    void setMaterialTranslucent(bool translucent);

    // The size in points that the content would take by itself.
    [[nodiscard]] QSize sizeHint() const override;
    // The size in points below which it does not go, whatever it is offered.
    [[nodiscard]] QSize leastSize() const;
    // Its height in points when it is that wide.
    [[nodiscard]] int heightFor(int width) const;

protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    friend class Scene;

    [[nodiscard]] QSize sizeFor(const ui::Proposal& offered) const;
    void requestRefresh();
    void refresh();
    void applyLook(const Look& look);
    void showAlert();
    [[nodiscard]] bool offerToEventViews(QWidget& widget, QEvent& event);

    std::shared_ptr<ui::Content> content_;
    ViewServices services_;
    std::unique_ptr<Scene> scene_;
    // A child widget; Qt's parent owns it.
    AlertSheet* alert_ = nullptr;
    bool refreshIsPending_ = false;
    SubscriptionPtr contentChanges_;
    SubscriptionPtr lookChanges_;
    Lifetime lifetime_;
};

} // namespace pelistra::linux
