#include "platform/linux/XcbWindowServer.h"

#include <algorithm>
#include <span>
#include <utility>

namespace pelistra::desktop {

XcbWindowServer::XcbWindowServer(TrayLook& look, X11WindowList& windowList)
    : look_(&look), windowList_(&windowList) {}

LibraryHandle XcbWindowServer::open(const std::string& /*path*/, int /*mode*/) {
    return this;
}

void XcbWindowServer::close(LibraryHandle /*handle*/) {
    beginRun();
}

MainConnectionFunction XcbWindowServer::resolveMainConnection(LibraryHandle /*handle*/,
                                                              const std::string& symbol) {
    if (symbol != "SLSMainConnectionID") {
        return {};
    }
    return [this] {
        beginRun();
        return ConnectionId{1};
    };
}

WindowCountFunction XcbWindowServer::resolveWindowCount(LibraryHandle /*handle*/,
                                                        const std::string& symbol) {
    if (symbol != "SLSGetWindowCount") {
        return {};
    }
    return [this](ConnectionId, ConnectionId, std::int32_t* outCount) {
        return countWindows(*outCount);
    };
}

MenuBarWindowListFunction XcbWindowServer::resolveMenuBarWindowList(LibraryHandle /*handle*/,
                                                                    const std::string& symbol) {
    if (symbol != "SLSGetProcessMenuBarWindowList") {
        return {};
    }
    return [this](ConnectionId, ConnectionId, std::int32_t capacity, WindowId* outList,
                  std::int32_t* outCount) { return listWindows(capacity, outList, *outCount); };
}

WindowFrameFunction XcbWindowServer::resolveWindowFrame(LibraryHandle /*handle*/,
                                                        const std::string& symbol) {
    if (symbol != "SLSGetScreenRectForWindow") {
        return {};
    }
    return [this](ConnectionId, WindowId window, Rect* outRect) -> WindowServerError {
        const auto frame = frameOf(window);
        if (!frame) {
            return noAnswer;
        }
        *outRect = *frame;
        return windowServerSuccess;
    };
}

void XcbWindowServer::beginRun() {
    view_.reset();
    frames_.clear();
    windowList_->offer(nullptr);
}

WindowServerError XcbWindowServer::countWindows(std::int32_t& count) {
    beginRun();
    auto view = look_->look();
    if (!view) {
        return noAnswer;
    }
    view_ = std::make_shared<const TrayView>(*std::move(view));
    frames_.reserve(view_->icons.size());
    for (const TrayIcon& icon : view_->icons) {
        frames_.emplace(icon.window, view_->coordinates.toGlobal(icon.frame));
    }
    count = static_cast<std::int32_t>(view_->icons.size());
    return windowServerSuccess;
}

WindowServerError XcbWindowServer::listWindows(std::int32_t capacity, WindowId* list,
                                               std::int32_t& count) {
    std::int32_t counted = 0;
    if (!view_ && countWindows(counted) != windowServerSuccess) {
        return noAnswer;
    }
    const std::span<WindowId> room(list, static_cast<std::size_t>(std::max(capacity, 0)));
    const std::size_t listed = std::min(room.size(), view_->icons.size());
    std::transform(view_->icons.begin(), view_->icons.begin() + static_cast<std::ptrdiff_t>(listed),
                   room.begin(), [](const TrayIcon& icon) { return icon.window; });
    count = static_cast<std::int32_t>(listed);
    if (listed > 0) {
        windowList_->offer(view_);
    }
    return windowServerSuccess;
}

std::optional<Rect> XcbWindowServer::frameOf(WindowId window) {
    const auto seen = frames_.find(window);
    return seen == frames_.end() ? look_->frameOf(window) : std::optional(seen->second);
}

} // namespace pelistra::desktop
