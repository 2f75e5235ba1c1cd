#include "platform/linux/icons/X11WindowList.h"

#include <unordered_map>
#include <utility>

namespace pelistra::linux {

X11WindowList::X11WindowList(TrayReader& look, OwnerName ownerName)
    : look_(&look), ownerName_(std::move(ownerName)) {}

std::optional<std::vector<WindowInfo>> X11WindowList::copyWindowInfo() {
    std::shared_ptr<const TrayView> view = std::exchange(offered_, nullptr);
    if (!view) {
        auto fresh = look_->look();
        if (!fresh) {
            return std::nullopt;
        }
        view = std::make_shared<const TrayView>(*std::move(fresh));
    }
    std::vector<WindowInfo> result;
    result.reserve(view->icons.size());
    // A program may have any number of icons; its name is asked for once.
    std::unordered_map<ProcessId, std::optional<std::string>> names;
    for (const TrayIcon& icon : view->icons) {
        const auto [name, isNew] = names.try_emplace(icon.pid);
        if (isNew && ownerName_) {
            name->second = ownerName_(icon);
        }
        result.push_back(describe(icon, name->second, view->coordinates));
    }
    return result;
}

WindowInfo X11WindowList::describe(const TrayIcon& icon,
                                   const std::optional<std::string>& ownerName,
                                   const Coordinates& coordinates) {
    const Rect frame = coordinates.toGlobal(icon.frame);
    WindowInfo info{.number = icon.window,
                    .ownerPid = {},
                    .ownerName = ownerName,
                    .name = icon.name,
                    .layer = statusWindowLayer,
                    .bounds = WindowBounds{.x = frame.origin.x,
                                           .y = frame.origin.y,
                                           .width = frame.size.width,
                                           .height = frame.size.height}};
    if (icon.pid > 0) {
        info.ownerPid = icon.pid;
    }
    return info;
}

} // namespace pelistra::linux
