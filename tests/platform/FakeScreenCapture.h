#pragma once

#include "platform/ScreenCapture.h"
#include "tests/platform/Journal.h"

#include <cstddef>
#include <functional>
#include <map>

namespace pelistra::testing {

struct PixelSize {
    std::size_t width = 0;
    std::size_t height = 0;
};

// Journal: "preflightAccess", "requestAccess", "capture <window> <options>". Pictures are
// FakeImages.
class FakeScreenCapture final : public ScreenCapture {
public:
    explicit FakeScreenCapture(Journal& journal) : journal_(journal) {}

    [[nodiscard]] bool preflightAccess() override;
    [[nodiscard]] bool requestAccess() override;
    [[nodiscard]] CaptureResult captureWindow(WindowId window, WindowImageOptions options) override;

    bool granted = true;
    // What a request answers; it changes nothing else.
    bool grantsRequest = true;
    // The windows that yield no picture.
    std::map<WindowId, CaptureRefusal> refusals;
    // The pictures' sizes where they are not the usual one.
    std::map<WindowId, PixelSize> sizes;
    PixelSize usualSize{.width = 44, .height = 48};
    // Runs while a picture is being taken.
    std::function<void(WindowId)> duringCapture;

private:
    Journal& journal_;
};

} // namespace pelistra::testing
