#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/statusitem/StatusItemPicture.h"

#include <functional>
#include <optional>
#include <string>

namespace pelistra::linux {

// The clickable part of a status item: what it shows and what a click does. Its item, which knows
// the window, may go before it.
class TrayStatusButton final : public StatusButton {
public:
    // What the button asks of its item.
    struct Callbacks {
        // The look has changed.
        std::function<void()> redraw;
        std::function<std::optional<ScreenRect>()> frame;
    };

    explicit TrayStatusButton(Callbacks callbacks) : callbacks_(std::move(callbacks)) {}

    void setImage(ImagePtr image) override;
    void setToolTip(std::string_view text) override { toolTip_ = text; }
    void setAction(std::function<void()> action) override;
    void sendActionOn(EventMask mask) override { mask_ = mask; }
    [[nodiscard]] std::optional<ScreenRect> windowFrame() const override;
    [[nodiscard]] std::optional<ScreenRect> frameOnScreen() const override;

    [[nodiscard]] const ImagePtr& image() const { return image_; }
    [[nodiscard]] const std::string& toolTip() const { return toolTip_; }

    // The action, if an event of that type triggers it; else empty.
    [[nodiscard]] std::function<void()> actionFor(EventType type) const;
    [[nodiscard]] bool isInert() const { return action_ == nullptr; }

    // The item has gone: there is nothing to redraw and no frame any more.
    void detach() { callbacks_ = {}; }

private:
    Callbacks callbacks_;
    ImagePtr image_;
    std::string toolTip_;
    std::function<void()> action_;
    EventMask mask_ = maskOf(EventType::LeftMouseUp);
};

} // namespace pelistra::linux
