#pragma once

#include "overflow/OverflowItem.h"
#include "overflow/OverflowStore.h"
#include "overflow/PrivateMenuBarBridge.h"
#include "tests/platform/FakePlatform.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace pelistra::testing {

// An item whose window is its id and whose process does not run.
inline OverflowItem item(WindowId id, std::string ownerName = "Foo", std::string windowName = "") {
    return {.id = id,
            .ownerPID = 5000,
            .ownerName = std::move(ownerName),
            .windowName = std::move(windowName),
            .bundleIdentifier = std::nullopt,
            .lastKnownFrame = makeRect<GlobalSpace>(id, 0, 24, 24),
            .capturedImage = nullptr,
            .applicationIcon = nullptr};
}

inline std::vector<OverflowItem> items(std::size_t count) {
    std::vector<OverflowItem> result;
    for (WindowId id = 1; id <= count; ++id) {
        result.push_back(item(id));
    }
    return result;
}

// A store over the fakes.
class SecondRowFixture : public ::testing::Test {
protected:
    [[nodiscard]] std::shared_ptr<OverflowStore> makeStore() const {
        const auto services = OverflowServices::of(fakes_.platform);
        return std::make_shared<OverflowStore>(std::make_shared<PrivateMenuBarBridge>(services),
                                               services);
    }

    FakePlatform fakes_;
    std::shared_ptr<OverflowStore> store_ = makeStore();
};

} // namespace pelistra::testing
