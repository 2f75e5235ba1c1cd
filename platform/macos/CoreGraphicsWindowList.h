#pragma once

#include "platform/WindowList.h"

namespace pelistra::appkit {

class CoreGraphicsWindowList final : public WindowList {
public:
    [[nodiscard]] std::optional<std::vector<WindowInfo>> copyWindowInfo() override;
};

} // namespace pelistra::appkit
