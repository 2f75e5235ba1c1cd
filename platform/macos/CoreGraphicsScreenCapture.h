#pragma once

#include "platform/ScreenCapture.h"

namespace pelistra::macos {

// Pictures of windows, by CoreGraphics. Without the function for that, which newer systems may no
// longer have, every picture is refused.
class CoreGraphicsScreenCapture final : public ScreenCapture {
public:
    [[nodiscard]] bool preflightAccess() override;
    [[nodiscard]] bool requestAccess() override;
    [[nodiscard]] CaptureResult captureWindow(WindowId window, WindowImageOptions options) override;
};

} // namespace pelistra::macos
