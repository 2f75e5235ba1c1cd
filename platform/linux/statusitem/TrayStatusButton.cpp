#include "platform/linux/statusitem/TrayStatusButton.h"

#include <utility>

namespace pelistra::linux {

void TrayStatusButton::setImage(ImagePtr image) {
    image_ = std::move(image);
    if (callbacks_.redraw) {
        callbacks_.redraw();
    }
}

void TrayStatusButton::setAction(std::function<void()> action) {
    action_ = std::move(action);
    if (callbacks_.redraw) {
        callbacks_.redraw();
    }
}

std::optional<ScreenRect> TrayStatusButton::windowFrame() const {
    return callbacks_.frame ? callbacks_.frame() : std::nullopt;
}

std::optional<ScreenRect> TrayStatusButton::frameOnScreen() const {
    return windowFrame();
}

std::function<void()> TrayStatusButton::actionFor(EventType type) const {
    return (mask_ & maskOf(type)) != 0 ? action_ : nullptr;
}

} // namespace pelistra::linux
