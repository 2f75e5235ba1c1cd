#pragma once

#include "overflow/OverflowServices.h"
#include "overflow/OverflowStore.h"
#include "overflow/PrivateMenuBarBridge.h"
#include "tests/platform/FakeApplication.h"
#include "tests/platform/FakeEventPosting.h"
#include "tests/platform/FakeImages.h"
#include "tests/platform/FakeLogSink.h"
#include "tests/platform/FakePrivateLibrary.h"
#include "tests/platform/FakeRunningApplications.h"
#include "tests/platform/FakeScreenCapture.h"
#include "tests/platform/FakeWindowList.h"
#include "tests/platform/Journal.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace pelistra::testing {

// A menu bar made of fakes. The divider stands at x 500.
class OverflowFixture : public ::testing::Test {
protected:
    static constexpr double iconWidth = 30;
    static constexpr double iconHeight = 24;
    static constexpr ProcessId clockPid = 300;

    [[nodiscard]] OverflowServices services();
    // A bridge of this test alone.
    [[nodiscard]] std::shared_ptr<PrivateMenuBarBridge> makeBridge();
    [[nodiscard]] std::unique_ptr<OverflowStore> makeStore();

    // Lets an application run.
    FakeRunningApplicationRecord& run(ProcessId pid, const std::string& name);
    // Puts an icon there, its window list entry included, behind those already there; the owner's
    // name is "Owner <pid>". Moves an icon that is there already.
    void place(WindowId id, ProcessId pid, const Rect& frame, const std::string& name = "");
    void place(WindowId id, ProcessId pid, double x);
    // Takes an icon away.
    void remove(WindowId id);
    // What the window list says about an icon.
    WindowInfo& info(WindowId id);

    [[nodiscard]] static Rect divider(double width = 14) {
        return makeRect<GlobalSpace>(500, 0, width, 24);
    }
    // An item of which only the id is known.
    [[nodiscard]] static OverflowItem itemWithId(WindowId id);
    [[nodiscard]] static std::vector<WindowId> idsOf(const std::vector<OverflowItem>& items);
    [[nodiscard]] static std::vector<WindowId>
    idsOf(const std::vector<PrivateMenuBarWindow>& windows);

    Journal journal;
    FakeApplication application{journal};
    FakeLogSink log{journal};
    FakeWindowList windowList{journal};
    FakePrivateLibrary library{journal};
    FakeRunningApplications applications{journal};
    FakeScreenCapture capture{journal};
    FakeEventPosting posting{journal};
};

} // namespace pelistra::testing
