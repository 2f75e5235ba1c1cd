#pragma once

#include "platform/Window.h"

namespace pelistra::desktop {

// Ordinary windows on Qt Widgets.
class QtWindows final : public Windows {
public:
    [[nodiscard]] std::unique_ptr<Window> window(Size contentSize,
                                                 std::uint32_t styleMask) override;
};

} // namespace pelistra::desktop
