#include "platform/macos/Conversions.h"
#include "platform/macos/MacPlatform.h"
#include "tests/contract/ImagesContract.h"
#include "tests/contract/LoginItemContract.h"
#include "tests/contract/MainQueueContract.h"
#include "tests/contract/PanelsContract.h"
#include "tests/contract/ScreensContract.h"
#include "tests/contract/StatusItemContract.h"
#include "tests/contract/UserDefaultsContract.h"
#include "tests/macos/standins/World.h"

#include <chrono>
#include <unistd.h>

namespace pelistra::testing {
namespace {

using namespace standins;

class AppKitBackend {
  public:
    AppKitBackend() {
        world().screens = {
            {.frame = NSMakeRect(0, 0, 1280, 800), .visibleFrame = NSMakeRect(0, 0, 1280, 776)}};
    }

    [[nodiscard]] bool runUntil(const std::function<bool()>& condition) {
        return standins::runUntil(condition);
    }
    [[nodiscard]] MainQueue& queue() { return platform_.platform().mainQueue; }
    [[nodiscard]] static Seconds now() {
        return std::chrono::steady_clock::now().time_since_epoch();
    }

    [[nodiscard]] UserDefaults& defaults() { return platform_.platform().defaults; }
    static void reopen() { [[NSUserDefaults standardUserDefaults] synchronize]; }

    [[nodiscard]] Images& images() { return platform_.platform().images; }
    [[nodiscard]] std::unique_ptr<Bitmap> bitmap(std::size_t width, std::size_t height) {
        constexpr double pixelsPerPoint = 2;
        world().barHeight = static_cast<double>(height) / pixelsPerPoint;
        world().hiddenItems = {{.window = 1001,
                                .ownerPid = 100,
                                .ownerName = "A",
                                .width = static_cast<double>(width) / pixelsPerPoint}};
        layOutMenuBar();
        return std::get<std::unique_ptr<Bitmap>>(
            platform_.platform().screenCapture.captureWindow(1001, 0));
    }

    [[nodiscard]] LoginItem& item() { return platform_.platform().loginItem; }
    [[nodiscard]] LoginItem& another() { return another_; }
    static void refuse() { world().loginItemRefusal = "拒绝"; }

    [[nodiscard]] Panels& panels() { return platform_.platform().panels; }
    [[nodiscard]] static std::optional<ScreenRect> shownFrame() {
        for (NSWindow* window in [NSApp windows]) {
            if ([window isKindOfClass:[NSPanel class]] && [window isVisible]) {
                return macos::screenRect([window contentRectForFrameRect:[window frame]]);
            }
        }
        return std::nullopt;
    }

    [[nodiscard]] Screens& screens() { return platform_.platform().screens; }
    static void addScreen() {
        world().screens.push_back({.frame = NSMakeRect(1280, 0, 640, 480),
                                   .visibleFrame = NSMakeRect(1280, 0, 640, 480)});
        tellScreenChange();
    }

    [[nodiscard]] StatusBar& bar() { return platform_.platform().statusBar; }
    [[nodiscard]] WindowList& windows() { return platform_.platform().windowList; }
    [[nodiscard]] static ProcessId ownPid() { return ::getpid(); }

  private:
    macos::MacPlatform platform_;
    macos::MainAppLoginItem another_;
};

INSTANTIATE_TYPED_TEST_SUITE_P(AppKit, MainQueueContract, AppKitBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(AppKit, UserDefaultsContract, AppKitBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(AppKit, ImagesContract, AppKitBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(AppKit, LoginItemContract, AppKitBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(AppKit, PanelsContract, AppKitBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(AppKit, ScreensContract, AppKitBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(AppKit, StatusItemContract, AppKitBackend);

} // namespace
} // namespace pelistra::testing
