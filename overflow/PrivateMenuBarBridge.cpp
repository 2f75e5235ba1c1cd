#include "overflow/PrivateMenuBarBridge.h"

#include "base/FatalError.h"
#include "platform/RunningApplications.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace pelistra {

namespace {

constexpr const char* libraryPath = "/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight";

// A target connection that stands for the windows of every process.
constexpr ConnectionId everyProcess = 0;

// What the size of an icon's window lies between, in points. Backgrounds, whole bars and invisible
// helper windows are of other sizes.
constexpr double sizeAbove = 4;
constexpr double widthBelow = 180;
constexpr double heightUpTo = 50;

constexpr const char* unknownOwner = "菜单栏项目";

bool hasIconSize(const Rect& frame) {
    return frame.width() > sizeAbove && frame.width() < widthBelow && frame.height() > sizeAbove &&
           frame.height() <= heightUpTo;
}

std::string ownerNameOf(std::optional<std::string> reported,
                        const RunningApplication* application) {
    if (!reported && application != nullptr) {
        reported = application->localizedName();
    }
    return std::move(reported).value_or(unknownOwner);
}

} // namespace

std::shared_ptr<PrivateMenuBarBridge>
PrivateMenuBarBridge::shared(const OverflowServices& services) {
    // Kept for good: at the end of the process the services that it closes its library with are
    // gone.
    static const auto& bridge =
        *new auto(std::make_shared<PrivateMenuBarBridge>(services)); // NOLINT(*-owning-memory)
    return bridge;
}

PrivateMenuBarBridge::PrivateMenuBarBridge(const OverflowServices& services)
    : library_(services.privateLibrary), windowList_(services.windowList),
      runningApplications_(services.runningApplications), logger_(services.log, "private-menu-bar"),
      symbols_(loadSymbols()) {
    if (!symbols_) {
        logger_.error(
            "Required SkyLight symbols are unavailable; second-row discovery is disabled");
    }
}

PrivateMenuBarBridge::~PrivateMenuBarBridge() {
    if (!symbols_) {
        return;
    }
    auto* const handle = symbols_->handle;
    // The functions go before the library that they live in.
    symbols_.reset();
    library_.close(handle);
}

std::optional<PrivateMenuBarBridge::Symbols> PrivateMenuBarBridge::loadSymbols() const {
    Symbols symbols;
    symbols.handle = library_.open(libraryPath, library_mode::lazy | library_mode::local);
    if (symbols.handle == nullptr) {
        return std::nullopt;
    }
    // Assigns and tells whether the symbol is there; the first missing one ends the sequence.
    const auto found = [](auto& function, auto resolved) {
        function = std::move(resolved);
        return static_cast<bool>(function);
    };
    const bool complete =
        found(symbols.mainConnection,
              library_.resolveMainConnection(symbols.handle, "SLSMainConnectionID")) &&
        found(symbols.windowCount,
              library_.resolveWindowCount(symbols.handle, "SLSGetWindowCount")) &&
        found(symbols.menuBarWindowList, library_.resolveMenuBarWindowList(
                                             symbols.handle, "SLSGetProcessMenuBarWindowList")) &&
        found(symbols.windowFrame,
              library_.resolveWindowFrame(symbols.handle, "SLSGetScreenRectForWindow"));
    if (complete) {
        return symbols;
    }
    auto* const handle = symbols.handle;
    symbols = {};
    library_.close(handle);
    return std::nullopt;
}

std::vector<PrivateMenuBarWindow> PrivateMenuBarBridge::windows() const {
    if (!symbols_) {
        return {};
    }
    const Symbols& symbols = *symbols_;
    const ConnectionId connection = symbols.mainConnection();
    const auto ids = listedIds(symbols, connection);
    if (ids.empty()) {
        return {};
    }
    auto list = windowList_.copyWindowInfo().value_or(std::vector<WindowInfo>{});
    auto infos = byNumber(list);

    std::vector<PrivateMenuBarWindow> result;
    result.reserve(ids.size());
    for (const WindowId id : ids) {
        if (auto window = record(symbols, connection, id, infos)) {
            result.push_back(*std::move(window));
        }
    }
    return result;
}

std::optional<Rect> PrivateMenuBarBridge::windowFrame(WindowId window) const {
    return symbols_ ? frameOf(*symbols_, symbols_->mainConnection(), window) : std::nullopt;
}

std::vector<WindowId> PrivateMenuBarBridge::listedIds(const Symbols& symbols,
                                                      ConnectionId connection) {
    std::int32_t count = 0;
    if (symbols.windowCount(connection, everyProcess, &count) != windowServerSuccess || count < 1) {
        return {};
    }
    std::vector<WindowId> ids(static_cast<std::size_t>(count), 0);
    std::int32_t listed = 0;
    if (symbols.menuBarWindowList(connection, everyProcess, count, ids.data(), &listed) !=
            windowServerSuccess ||
        listed < 1) {
        return {};
    }
    ids.resize(static_cast<std::size_t>(std::min(count, listed)));
    return ids;
}

PrivateMenuBarBridge::InfoByNumber PrivateMenuBarBridge::byNumber(std::vector<WindowInfo>& infos) {
    InfoByNumber result(infos.size());
    for (WindowInfo& info : infos) {
        if (info.number && !result.emplace(*info.number, &info).second) {
            fatalError("the window server listed one window number twice");
        }
    }
    return result;
}

std::optional<Rect> PrivateMenuBarBridge::frameOf(const Symbols& symbols, ConnectionId connection,
                                                  WindowId window) {
    Rect frame;
    if (symbols.windowFrame(connection, window, &frame) != windowServerSuccess) {
        return std::nullopt;
    }
    return frame;
}

std::optional<PrivateMenuBarWindow> PrivateMenuBarBridge::record(const Symbols& symbols,
                                                                 ConnectionId connection,
                                                                 WindowId window,
                                                                 InfoByNumber& infos) const {
    const auto frame = frameOf(symbols, connection, window);
    if (!frame || !hasIconSize(*frame)) {
        return std::nullopt;
    }
    const auto entry = infos.find(window);
    WindowInfo* const info = entry != infos.end() ? std::exchange(entry->second, nullptr) : nullptr;
    if (info == nullptr || !info->ownerPid) {
        return std::nullopt;
    }
    const auto application = runningApplications_.runningApplication(*info->ownerPid);
    return PrivateMenuBarWindow{
        .id = window,
        .ownerPID = *info->ownerPid,
        .ownerName = ownerNameOf(std::move(info->ownerName), application.get()),
        .windowName = std::move(info->name).value_or(std::string()),
        .bundleIdentifier = application ? application->bundleIdentifier() : std::nullopt,
        .frame = *frame,
        .applicationIcon = application ? application->icon() : nullptr};
}

} // namespace pelistra
