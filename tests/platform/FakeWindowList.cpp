#include "tests/platform/FakeWindowList.h"

#include <algorithm>
#include <string>

namespace pelistra::testing {

std::optional<std::vector<WindowInfo>> FakeWindowList::copyWindowInfo() {
    journal_.note("copyWindowInfo");
    if (beforeAnswer) {
        beforeAnswer(answers);
    }
    ++answers;
    return windows;
}

void FakeWindowList::place(ProcessId owner, std::string_view name, double x, double width) {
    if (!windows) {
        windows.emplace();
    }
    const WindowBounds bounds{.x = x, .y = 0, .width = width, .height = 24};
    for (auto& window : *windows) {
        if (window.ownerPid == owner && window.name == name) {
            window.bounds = bounds;
            return;
        }
    }
    windows->push_back({.number = static_cast<WindowId>(100 + windows->size()),
                        .ownerPid = owner,
                        .ownerName = "program",
                        .name = std::string(name),
                        .layer = statusWindowLayer,
                        .bounds = bounds});
}

void FakeWindowList::remove(std::string_view name) {
    if (windows) {
        std::erase_if(*windows, [&](const WindowInfo& window) { return window.name == name; });
    }
}

} // namespace pelistra::testing
