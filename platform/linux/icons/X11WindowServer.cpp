#include "platform/linux/icons/X11WindowServer.h"

#include <algorithm>
#include <span>
#include <utility>

namespace pelistra::linux {

namespace {

WindowInfo describe(const TrayIcon& icon, const std::optional<std::string>& ownerName,
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

} // namespace

X11WindowServer::X11WindowServer(TrayReader& reader, OwnerName ownerName)
    : reader_(&reader), ownerName_(std::move(ownerName)) {}

std::optional<std::vector<WindowInfo>> X11WindowServer::copyWindowInfo() {
    std::shared_ptr<const TrayView> view = view_;
    if (!std::exchange(descriptionsAreDue_, false)) {
        auto fresh = reader_->read();
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

LibraryHandle X11WindowServer::open(const std::string& /*path*/, int /*mode*/) {
    return this;
}

void X11WindowServer::close(LibraryHandle /*handle*/) {
    beginRun();
}

MainConnectionFunction X11WindowServer::resolveMainConnection(LibraryHandle /*handle*/,
                                                              const std::string& symbol) {
    if (symbol != "SLSMainConnectionID") {
        return {};
    }
    return [this] {
        beginRun();
        return ConnectionId{1};
    };
}

WindowCountFunction X11WindowServer::resolveWindowCount(LibraryHandle /*handle*/,
                                                        const std::string& symbol) {
    if (symbol != "SLSGetWindowCount") {
        return {};
    }
    return [this](ConnectionId, ConnectionId, std::int32_t* outCount) {
        return countWindows(*outCount);
    };
}

MenuBarWindowListFunction X11WindowServer::resolveMenuBarWindowList(LibraryHandle /*handle*/,
                                                                    const std::string& symbol) {
    if (symbol != "SLSGetProcessMenuBarWindowList") {
        return {};
    }
    return [this](ConnectionId, ConnectionId, std::int32_t capacity, WindowId* outList,
                  std::int32_t* outCount) { return listWindows(capacity, outList, *outCount); };
}

WindowFrameFunction X11WindowServer::resolveWindowFrame(LibraryHandle /*handle*/,
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

void X11WindowServer::beginRun() {
    view_.reset();
    frames_.clear();
    descriptionsAreDue_ = false;
}

WindowServerError X11WindowServer::countWindows(std::int32_t& count) {
    beginRun();
    auto view = reader_->read();
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

WindowServerError X11WindowServer::listWindows(std::int32_t capacity, WindowId* list,
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
    descriptionsAreDue_ = descriptionsAreDue_ || listed > 0;
    return windowServerSuccess;
}

std::optional<Rect> X11WindowServer::frameOf(WindowId window) {
    const auto seen = frames_.find(window);
    return seen == frames_.end() ? reader_->frameOf(window) : std::optional(seen->second);
}

} // namespace pelistra::linux
