#include "tests/overflow/OverflowFixture.h"

#include <algorithm>
#include <stdexcept>

namespace pelistra::testing {

OverflowServices OverflowFixture::services() {
    return {.application = application,
            .log = log,
            .windowList = windowList,
            .privateLibrary = library,
            .runningApplications = applications,
            .screenCapture = capture,
            .eventPosting = posting};
}

std::shared_ptr<PrivateMenuBarBridge> OverflowFixture::makeBridge() {
    return std::make_shared<PrivateMenuBarBridge>(services());
}

std::unique_ptr<OverflowStore> OverflowFixture::makeStore() {
    return std::make_unique<OverflowStore>(makeBridge(), services());
}

FakeRunningApplicationRecord& OverflowFixture::run(ProcessId pid, const std::string& name) {
    auto& record = applications.running[pid];
    record.localizedName = name;
    return record;
}

void OverflowFixture::place(WindowId id, ProcessId pid, const Rect& frame,
                            const std::string& name) {
    library.frames[id] = frame;
    if (std::ranges::find(library.ids, id) != library.ids.end()) {
        return;
    }
    library.ids.push_back(id);
    windowList.windows->push_back({.number = id,
                                   .ownerPid = pid,
                                   .ownerName = "Owner " + std::to_string(pid),
                                   .name = name,
                                   .layer = statusWindowLayer,
                                   .bounds = std::nullopt});
}

void OverflowFixture::place(WindowId id, ProcessId pid, double x) {
    place(id, pid, makeRect<GlobalSpace>(x, 0, iconWidth, iconHeight));
}

void OverflowFixture::remove(WindowId id) {
    std::erase(library.ids, id);
    library.frames.erase(id);
    std::erase_if(*windowList.windows, [id](const auto& each) { return each.number == id; });
}

WindowInfo& OverflowFixture::info(WindowId id) {
    for (WindowInfo& each : *windowList.windows) {
        if (each.number == id) {
            return each;
        }
    }
    throw std::out_of_range("no such window in the list");
}

OverflowItem OverflowFixture::itemWithId(WindowId id) {
    OverflowItem item;
    item.id = id;
    return item;
}

std::vector<WindowId> OverflowFixture::idsOf(const std::vector<OverflowItem>& items) {
    std::vector<WindowId> ids;
    std::ranges::transform(items, std::back_inserter(ids), &OverflowItem::id);
    return ids;
}

std::vector<WindowId> OverflowFixture::idsOf(const std::vector<PrivateMenuBarWindow>& windows) {
    std::vector<WindowId> ids;
    std::ranges::transform(windows, std::back_inserter(ids), &PrivateMenuBarWindow::id);
    return ids;
}

} // namespace pelistra::testing
