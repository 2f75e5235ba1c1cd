#pragma once

#include "base/Geometry.h"
#include "platform/x11/Connection.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include <QPointer>
#include <QWidget>

class QPushButton;
class QAbstractButton;

namespace pelistra::linux {

// The widget of an ordinary window. Without a visible title and with a transparent title bar, the
// content takes the whole window and a close button lies over its corner; the window manager's
// frame is left out then, and the window moves by its background.
//
// It appears in no taskbar and no pager: the organiser has no other place on the desktop than its
// status items.
class WindowFrame final : public QWidget {
public:
    // The connection outlives the window.
    WindowFrame(Size contentSize, std::uint32_t styleMask, const x11::Connection& connection);

    void setTitleHidden(bool hidden);
    void setTitlebarTransparent(bool transparent);
    void setMovableByBackground(bool movable) { movable_ = movable; }
    // Called whenever the window has been put away, by whomever; not for minimising.
    void setPutAwayHandler(std::function<void()> handler) { putAway_ = std::move(handler); }
    void setContentMinimum(Size size);
    // Shows the widget over the whole window, instead of what it showed before.
    void setContentWidget(std::unique_ptr<QWidget> content);
    // Puts the window into the middle of its screen's free area, a little above.
    void centre();
    // Shows it, un-minimised, in front, and makes it the active window.
    void bringUp();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    [[nodiscard]] bool is(std::uint32_t style) const { return (styleMask_ & style) != 0; }
    void updateFrame();
    void placeContent();
    void stayOutOfTaskbars();
    void activateAnother() const;

    std::uint32_t styleMask_;
    const x11::Connection& connection_;
    bool titleHidden_ = false;
    bool titlebarTransparent_ = false;
    bool movable_ = false;
    std::function<void()> putAway_;
    // Child widgets; Qt's parent owns them.
    QPointer<QWidget> content_;
    QPointer<QAbstractButton> closeButton_;
};

} // namespace pelistra::linux
