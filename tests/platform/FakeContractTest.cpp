#include "tests/contract/ImagesContract.h"
#include "tests/contract/LoginItemContract.h"
#include "tests/contract/MainQueueContract.h"
#include "tests/contract/PanelsContract.h"
#include "tests/contract/ScreensContract.h"
#include "tests/contract/UserDefaultsContract.h"
#include "tests/platform/FakePlatform.h"

namespace pelistra::testing {
namespace {

// Lets ten seconds of the virtual clock pass, a millisecond at a time.
bool runFakeUntil(FakeMainQueue& queue, const std::function<bool()>& condition) {
    constexpr int mostSteps = 10'000;
    for (int step = 0; step < mostSteps && !condition(); ++step) {
        queue.runUntilIdle();
        queue.advance(Seconds(0.001));
    }
    return condition();
}

class FakeBackend {
public:
    [[nodiscard]] MainQueue& queue() { return fakes_.mainQueue; }
    [[nodiscard]] Seconds now() const { return fakes_.mainQueue.now(); }
    [[nodiscard]] bool runUntil(const std::function<bool()>& condition) {
        return runFakeUntil(fakes_.mainQueue, condition);
    }

    [[nodiscard]] UserDefaults& defaults() { return fakes_.defaults; }
    void reopen() {}

    [[nodiscard]] Images& images() { return fakes_.images; }
    [[nodiscard]] std::unique_ptr<Bitmap> bitmap(std::size_t width, std::size_t height) {
        fakes_.screenCapture.usualSize = {.width = width, .height = height};
        return std::get<std::unique_ptr<Bitmap>>(fakes_.screenCapture.captureWindow(1, 0));
    }

    [[nodiscard]] LoginItem& item() { return fakes_.loginItem; }
    [[nodiscard]] LoginItem& another() { return fakes_.loginItem; }
    void refuse() { fakes_.loginItem.refusal = "拒绝"; }

    [[nodiscard]] Panels& panels() { return fakes_.panels; }
    [[nodiscard]] std::optional<ScreenRect> shownFrame() const {
        const auto& panel = *fakes_.panels.made.back();
        return panel.visible && !panel.destroyed ? std::optional(panel.frame()) : std::nullopt;
    }

protected:
    FakePlatform fakes_;
};

class FakeSymbols final : public FakeBackend {
public:
    FakeSymbols() { fakes_.images.missingSymbols = {"no.such.symbol", ""}; }
};

class FakeScreensBackend final : public FakeBackend {
public:
    FakeScreensBackend() {
        fakes_.screens.list = {plainScreen(0, 1280)};
        fakes_.screens.mainScreen = fakes_.screens.list.front();
    }
    [[nodiscard]] Screens& screens() { return fakes_.screens; }
    void addScreen() {
        fakes_.screens.list.push_back(plainScreen(1280, 640, 480));
        fakes_.screens.announceChange();
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(Fake, MainQueueContract, FakeBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, UserDefaultsContract, FakeBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ImagesContract, FakeSymbols);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, LoginItemContract, FakeBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, PanelsContract, FakeBackend);
INSTANTIATE_TYPED_TEST_SUITE_P(Fake, ScreensContract, FakeScreensBackend);

} // namespace
} // namespace pelistra::testing
