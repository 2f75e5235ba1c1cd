#pragma once

#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/XClient.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// The folder of the programs that this build has made.
[[nodiscard]] std::filesystem::path builtPrograms();

// pelistra-menubar of this build, running on a private display.
class BarUnderTest {
public:
    // Starts it and waits until it owns the tray; throws std::runtime_error with what it wrote when
    // it does not. The display must outlive this object.
    BarUnderTest(PrivateDisplay& display, XClient& client,
                 const std::vector<std::string>& options = {});

    [[nodiscard]] ChildProcess& process() { return *process_; }
    // Device pixels per point.
    [[nodiscard]] double scale();

private:
    XClient& client_;
    std::unique_ptr<ChildProcess> process_;
};

// pelistra of this build, running on a private display.
class OrganiserUnderTest {
public:
    inline static const std::string controlName = "PelistraV3.Control";
    inline static const std::string dividerName = "PelistraV3.Divider";

    enum class WaitForItems { Yes, No };

    // Starts it and waits until both items are docked in the bar, unless told not to; throws
    // std::runtime_error with what it wrote when they are not. The display must outlive this
    // object.
    OrganiserUnderTest(PrivateDisplay& display, XClient& client,
                       const std::vector<std::string>& options = {},
                       WaitForItems wait = WaitForItems::Yes);

    [[nodiscard]] ChildProcess& process() { return *process_; }
    // Root coordinates; empty while the item is not docked.
    [[nodiscard]] std::optional<WindowFrame> controlFrame();
    [[nodiscard]] std::optional<WindowFrame> dividerFrame();
    // The divider is at least 500 points long: nothing else makes it longer than its own 14.
    [[nodiscard]] bool isCollapsed();
    // Marks the onboarding of this version as done in the defaults file, so that its window does
    // not open. Call it before the organiser starts for the first time.
    static void completeOnboarding(const PrivateDisplay& display);

private:
    XClient& client_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace pelistra::testing
