#include "overflow/OverflowStore.h"

#include "base/FatalError.h"
#include "platform/RunningApplications.h"
#include "platform/ScreenCapture.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <variant>

namespace pelistra {

namespace {

// How far, in points, a window may stand above or below the divider and still be in its row.
constexpr double rowTolerance = 3;
// How far, in points, a window may reach beyond the bound.
constexpr double boundTolerance = 1;

constexpr const char* unsupportedMessage = "当前 macOS 版本不支持第二行菜单栏读取。";
constexpr const char* nothingHiddenMessage = "分隔线左侧暂时没有可放入第二行的图标。";
constexpr const char* restartMessage =
    "允许屏幕录制后，请重新启动 Pelistra，即可显示菜单栏原图标。";
constexpr const char* ownerGoneMessage = "该菜单栏项目已经退出。";
constexpr const char* noMainWindowMessage =
    " 没有可打开的主窗口；可右键点击该图标，尝试打开原托盘菜单。";

using Items = std::vector<OverflowItem>;

// Items of the windows, in their order, with the pictures that the known items carry.
Items withKnownPictures(std::vector<PrivateMenuBarWindow> windows, const Items& known) {
    std::unordered_map<WindowId, ImagePtr> pictures(known.size());
    for (const OverflowItem& item : known) {
        pictures.emplace(item.id, item.capturedImage);
    }
    Items result;
    result.reserve(windows.size());
    for (auto& window : windows) {
        const auto picture = pictures.find(window.id);
        result.push_back(OverflowItem::from(std::move(window),
                                            picture != pictures.end() ? picture->second : nullptr));
    }
    return result;
}

// The known items where their windows are now, and an item for each window that had none.
Items merged(const Items& known, std::vector<PrivateMenuBarWindow> windows) {
    Items result = known;
    std::unordered_map<WindowId, std::size_t> positions(known.size() + windows.size());
    for (std::size_t position = 0; position < known.size(); ++position) {
        positions.emplace(known[position].id, position);
    }
    for (auto& window : windows) {
        const auto [position, isNew] = positions.emplace(window.id, result.size());
        if (isNew) {
            result.push_back(OverflowItem::from(std::move(window), nullptr));
        } else {
            result[position->second].lastKnownFrame = window.frame;
        }
    }
    return result;
}

// Takes out the items whose application no longer runs.
void removeEnded(Items& items, const std::vector<ProcessId>& running) {
    const std::unordered_set<ProcessId> alive(running.begin(), running.end());
    std::erase_if(items, [&alive](const auto& item) { return !alive.contains(item.ownerPID); });
}

// From left to right; at the same place the order stays.
Items orderedByStart(Items items) {
    std::multimap<double, OverflowItem> byStart;
    for (OverflowItem& item : items) {
        byStart.emplace(item.lastKnownFrame.minX(), std::move(item));
    }
    items.clear();
    for (auto& [start, item] : byStart) {
        items.push_back(std::move(item));
    }
    return items;
}

// The order from left to right; at the same place the smaller id comes first.
std::pair<double, WindowId> startAndId(const OverflowItem& item) {
    return {item.lastKnownFrame.minX(), item.id};
}

template <class AnyItems>
auto& itemAt(AnyItems& items, std::size_t index) {
    if (index >= items.size()) {
        fatalError("the list of hidden items shrank while their pictures were taken");
    }
    return items[index];
}

} // namespace

OverflowStore::OverflowStore(std::shared_ptr<PrivateMenuBarBridge> bridge,
                             const OverflowServices& services)
    : hasScreenCapturePermission(services.screenCapture.preflightAccess()),
      application_(services.application), runningApplications_(services.runningApplications),
      screenCapture_(services.screenCapture), logger_(services.log, "overflow-store"),
      bridge_(std::move(bridge)), activator_(bridge_, services) {}

std::vector<PrivateMenuBarWindow> OverflowStore::windowsEndingAt(double bound,
                                                                 const Rect& dividerFrame) const {
    auto windows = bridge_->windows();
    const ProcessId ownPid = application_.processIdentifier();
    std::erase_if(windows, [&](const PrivateMenuBarWindow& window) {
        const bool placed = window.ownerPID != ownPid &&
                            std::abs(window.frame.minY() - dividerFrame.minY()) <= rowTolerance &&
                            window.frame.maxX() <= bound + boundTolerance;
        return !placed;
    });
    return windows;
}

void OverflowStore::snapshot(const Rect& leftOf) {
    if (!bridge_->hasSymbols()) {
        message.set(unsupportedMessage);
        return;
    }
    auto found = windowsEndingAt(leftOf.minX(), leftOf);
    items.set(orderedByStart(withKnownPictures(std::move(found), items.get())));
    captureMissingImages();
    message.set(items.get().empty() ? std::optional<std::string>(nothingHiddenMessage)
                                    : std::nullopt);
    logger_.info("Snapshotted " + std::to_string(items.get().size()) + " overflow item(s)");
}

void OverflowStore::refreshWhileCollapsed(const Rect& dividerFrame) {
    if (!bridge_->hasSymbols()) {
        return;
    }
    auto found = windowsEndingAt(dividerFrame.maxX(), dividerFrame);
    if (found.empty()) {
        return;
    }
    Items refreshed = merged(items.get(), std::move(found));
    removeEnded(refreshed, runningApplications_.processIdentifiers());
    if (!std::ranges::is_sorted(refreshed, {}, startAndId)) {
        std::ranges::sort(refreshed, {}, startAndId);
    }
    const bool otherItems =
        !std::ranges::equal(refreshed, items.get(), {}, &OverflowItem::id, &OverflowItem::id);
    items.set(std::move(refreshed));
    if (otherItems) {
        captureMissingImages();
    }
}

std::optional<Rect> OverflowStore::currentFrame(const OverflowItem& item) const {
    return bridge_->windowFrame(item.id);
}

bool OverflowStore::activateOriginalMenu(const OverflowItem& item) {
    const bool activated = activator_.activate(item);
    message.set(activated ? std::nullopt
                          : std::optional("无法触发 " + item.displayName() + " 的原托盘菜单。"));
    return activated;
}

bool OverflowStore::openApplication(const OverflowItem& item) {
    const auto application = runningApplications_.runningApplication(item.ownerPID);
    if (!application) {
        message.set(ownerGoneMessage);
        return false;
    }
    const auto url = outermostApplicationURL(application->bundleUrl());
    if ((url && runningApplications_.open(*url)) || application->activate(activateAllWindows)) {
        message.set(std::nullopt);
        return true;
    }
    message.set(item.ownerName + noMainWindowMessage);
    return false;
}

void OverflowStore::requestScreenCapturePermission() {
    if (screenCapture_.requestAccess()) {
        hasScreenCapturePermission.set(true);
        captureMissingImages();
        return;
    }
    hasScreenCapturePermission.set(screenCapture_.preflightAccess());
    message.set(restartMessage);
}

void OverflowStore::captureMissingImages() {
    hasScreenCapturePermission.set(screenCapture_.preflightAccess());
    if (!hasScreenCapturePermission.get()) {
        return;
    }
    const std::size_t count = items.get().size();
    for (std::size_t index = 0; index < count; ++index) {
        captureImage(index);
    }
}

void OverflowStore::captureImage(std::size_t index) {
    const OverflowItem& item = itemAt(items.get(), index);
    if (item.capturedImage) {
        return;
    }
    const auto result = screenCapture_.captureWindow(item.id, windowImageBoundsIgnoreFraming |
                                                                  windowImageBestResolution);
    const auto* const bitmap = std::get_if<std::unique_ptr<Bitmap>>(&result);
    if (bitmap == nullptr) {
        return;
    }
    // Pixels are taken as points; the view scales the picture to the icon's place.
    const Size size{.width = static_cast<double>((*bitmap)->pixelWidth()),
                    .height = static_cast<double>((*bitmap)->pixelHeight())};
    items.mutate([index, image = (*bitmap)->image(size)](Items& changed) {
        itemAt(changed, index).capturedImage = image;
    });
}

} // namespace pelistra
