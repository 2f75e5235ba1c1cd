#include "platform/linux/statusitem/StatusToolTip.h"

#include "platform/linux/screens/RootFrame.h"
#include "platform/linux/statusitem/TrayHost.h"
#include "platform/linux/statusitem/TrayStatusButton.h"
#include "platform/linux/windows/LoadedWindows.h"

namespace pelistra::linux {

void StatusToolTip::schedule(const std::shared_ptr<TrayStatusButton>& button, xcb_window_t window,
                             const ui::Rgb& foreground) {
    button_ = button;
    window_ = window;
    onDark_ = isLight(foreground);
    timer_ = mainQueue_.repeatingTimer(delay, [this] {
        timer_.reset();
        show();
    });
}

void StatusToolTip::hide() {
    timer_.reset();
    if (WindowsModule* const module = windows_.loaded()) {
        module->hideToolTip();
    }
}

// Without the module there is none: nobody has asked for it by a click.
void StatusToolTip::show() {
    const auto button = button_.lock();
    const auto item = rootFrameOf(connection_, window_);
    if (!button || button->toolTip().empty() || !item) {
        return;
    }
    if (WindowsModule* const module = windows_.load()) {
        module->showToolTip(button->toolTip(), *item, onDark_);
    }
}

} // namespace pelistra::linux
