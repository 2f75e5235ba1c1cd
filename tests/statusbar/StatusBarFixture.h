#pragma once

#include "statusbar/StatusBarController.h"
#include "tests/platform/FakePlatform.h"
#include "ui/View.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::testing {

inline constexpr std::string_view controlName = "PelistraV3.Control";
inline constexpr std::string_view dividerName = "PelistraV3.Divider";
inline constexpr std::string_view controlToolTip =
    "左键：折叠或打开第二行；按住 Option 点击：展开整理；右键：设置";

// A controller on a screen of 1512 points, in a menu bar that lays its items out from the right
// whenever a length changes: the arrow ends at 1424, the divider and the icons follow to its left.
class StatusBarFixture : public ::testing::Test {
protected:
    static constexpr double collapsedLength = 3024;
    static constexpr double controlX = 1400;

    struct Icon {
        WindowId id = 0;
        ProcessId pid = 0;
        std::string owner;
        double width = 24;
    };

    StatusBarFixture();
    ~StatusBarFixture() override;
    StatusBarFixture(const StatusBarFixture&) = delete;
    StatusBarFixture& operator=(const StatusBarFixture&) = delete;

    // Makes the controller; its start-up check still waits.
    void make();
    // Makes the controller, lets its start-up check pass, and forgets what was asked until then.
    void start();
    // The same, collapsed.
    void startCollapsed();
    // The same, collapsed, with the second row open, and past the latch time.
    void startWithOpenRow();

    FakeStatusItemRecord& control() { return fake_.statusBar.item(controlName); }
    FakeStatusItemRecord& divider() { return fake_.statusBar.item(dividerName); }
    [[nodiscard]] std::string arrow();

    // The windows stay where they are put from now on.
    void placeItems(double dividerX, double controlX);
    // The icon that stands `place` places left of the divider.
    Icon& hideIcon(WindowId id, ProcessId pid, std::string owner = "Program");
    void layOut();

    void leftClick(std::uint64_t modifiers = 0);
    void optionClick() { leftClick(modifierOption); }
    void rightClickArrow();
    void passTime(double seconds) { fake_.mainQueue.advance(Seconds(seconds)); }
    void passLatch() { passTime(0.25); }

    [[nodiscard]] bool isCollapsed();
    [[nodiscard]] bool rowIsOpen() const;
    // What the second row shows now.
    [[nodiscard]] ui::View row() const;
    // Whether the second row shows the text.
    [[nodiscard]] bool rowShows(std::string_view text) const;

    // What was asked since the last call, log lines included.
    std::vector<std::string> takeJournal();
    // The log lines of the controller: level and text.
    [[nodiscard]] std::vector<std::string> logged() const;

    FakePlatform& fake_ = freshPlatform();
    std::vector<Icon> icons_;
    std::unique_ptr<StatusBarController> controller_;
    int settingsShown_ = 0;
    bool layoutIsFixed_ = false;
};

} // namespace pelistra::testing
