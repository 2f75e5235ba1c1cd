#pragma once

#include "platform/linux/Coordinates.h"
#include "platform/x11/Connection.h"

#include <chrono>
#include <memory>

#include <QColor>
#include <QTimer>

class QLabel;

namespace pelistra::desktop {

class TrayStatusButton;

// Where a tooltip goes, in device pixels: its centre below that of the item, or above it where
// there is no room, all of it on the monitor.
[[nodiscard]] RootRect toolTipFrame(int width, int height, const RootRect& item,
                                    const RootRect& monitor, int gap);

// The one tooltip of the status items. The window, and with it Qt's fonts, is made when a tooltip
// is first shown, and goes when it is hidden.
class StatusToolTip {
public:
    // How long the pointer rests on an item before its tooltip comes.
    static constexpr std::chrono::milliseconds delay{700};

    explicit StatusToolTip(const x11::Connection& connection);
    StatusToolTip(const StatusToolTip&) = delete;
    StatusToolTip& operator=(const StatusToolTip&) = delete;
    ~StatusToolTip();

    // Shows the button's tooltip after the delay, at its window, unless it is hidden before. It is
    // dark where the bar's foreground is light.
    void schedule(const std::shared_ptr<TrayStatusButton>& button, xcb_window_t window,
                  const QColor& foreground);
    void hide();

private:
    void show();
    [[nodiscard]] std::unique_ptr<QLabel> makeLabel(const QString& text) const;

    const x11::Connection& connection_;
    QTimer timer_;
    std::weak_ptr<TrayStatusButton> button_;
    xcb_window_t window_ = XCB_WINDOW_NONE;
    QColor foreground_;
    std::unique_ptr<QLabel> label_;
};

} // namespace pelistra::desktop
