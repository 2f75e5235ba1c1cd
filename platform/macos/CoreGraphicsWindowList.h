#pragma once

#include "base/Logger.h"
#include "platform/WindowList.h"

#include <functional>
#include <utility>
#include <vector>

namespace pelistra::macos {

// Every window of every process, by CGWindowListCopyWindowInfo. No answer at all when the system's
// is not a list of dictionaries.
//
// In macOS 26 the windows of status items belong to the control centre. When the list has no status
// item of ours, ours are added as macOS 15 lists them.
class CoreGraphicsWindowList final : public WindowList {
public:
    using OwnItems = std::function<std::vector<WindowInfo>()>;

    CoreGraphicsWindowList(OwnItems ownItems, LogSink& log)
        : ownItems_(std::move(ownItems)), logger_(log, "window-list") {}

    [[nodiscard]] std::optional<std::vector<WindowInfo>> copyWindowInfo() override;

private:
    void addOwnItems(std::vector<WindowInfo>& list);

    OwnItems ownItems_;
    Logger logger_;
    bool saidSo_ = false;
};

} // namespace pelistra::macos
