#pragma once

#include "platform/ScreenCapture.h"

namespace pelistra::appkit {

class CoreGraphicsScreenCapture final : public ScreenCapture {
public:
    [[nodiscard]] bool preflightAccess() override;
    [[nodiscard]] bool requestAccess() override;
    [[nodiscard]] CaptureResult captureWindow(WindowId window, WindowImageOptions options) override;
};

} // namespace pelistra::appkit
