#pragma once

#include "platform/WindowList.h"

namespace pelistra::appkit {

// Every window of every process, by CGWindowListCopyWindowInfo. No answer at all when the system's
// is not a list of dictionaries.
class CoreGraphicsWindowList final : public WindowList {
public:
    [[nodiscard]] std::optional<std::vector<WindowInfo>> copyWindowInfo() override;
};

} // namespace pelistra::appkit
