#include "platform/macos/AppKitPanels.h"
#include "platform/macos/Conversions.h"
#include "platform/macos/DispatchMainQueue.h"
#include "tests/contract/MainQueueContract.h"
#include "tests/contract/PanelsContract.h"
#include "tests/macos/RunLoop.h"

#import <AppKit/AppKit.h>

#include <chrono>

// What every backend of the seam promises, held by AppKit itself where no user is in the way.
namespace pelistra::testing {
namespace {

class MacBackend {
  public:
    [[nodiscard]] static bool runUntil(const std::function<bool()>& condition) {
        return standins::runUntil(condition);
    }
    [[nodiscard]] MainQueue& queue() { return queue_; }
    [[nodiscard]] static Seconds now() {
        return std::chrono::steady_clock::now().time_since_epoch();
    }
    [[nodiscard]] Panels& panels() { return panels_; }
    [[nodiscard]] static std::optional<ScreenRect> shownFrame() {
        for (NSWindow* window in [NSApp windows]) {
            if ([window isKindOfClass:[NSPanel class]] && [window isVisible]) {
                return macos::screenRect([window contentRectForFrameRect:[window frame]]);
            }
        }
        return std::nullopt;
    }

  private:
    macos::DispatchMainQueue queue_;
    macos::AppKitPanels panels_{{}, [] { return static_cast<NSAppearance*>(nil); }};
};

INSTANTIATE_TYPED_TEST_SUITE_P(Mac, MainQueueContract, MacBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Mac, PanelsContract, MacBackend);

} // namespace
} // namespace pelistra::testing
