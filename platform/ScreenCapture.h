#pragma once

#include "platform/Image.h"
#include "platform/WindowList.h"

#include <cstdint>
#include <memory>
#include <variant>

namespace pelistra {

// Bits by the platform's raw values (CGWindowImageOption).
using WindowImageOptions = std::uint32_t;
// Without the shadow around the window.
inline constexpr WindowImageOptions windowImageBoundsIgnoreFraming = 1;
// With every pixel that the screen has, not one for each point.
inline constexpr WindowImageOptions windowImageBestResolution = 8;

enum class CaptureRefusal {
    // The one-element array that holds the window's id could not be made.
    NoWindowArray,
    // The window server gave a null image: the window is gone or cannot be captured.
    NoImage,
};

// A picture's pixels (never null), or why there are none.
using CaptureResult = std::variant<std::unique_ptr<Bitmap>, CaptureRefusal>;

// Pictures of other programs' windows.
class ScreenCapture {
public:
    ScreenCapture() = default;
    ScreenCapture(const ScreenCapture&) = delete;
    ScreenCapture& operator=(const ScreenCapture&) = delete;
    virtual ~ScreenCapture() = default;

    // Whether pictures may be taken now. Never asks the user.
    [[nodiscard]] virtual bool preflightAccess() = 0;
    // Asks the user for permission where it is missing; whether pictures may be taken.
    [[nodiscard]] virtual bool requestAccess() = 0;
    // A picture of that window alone, within its own bounds.
    [[nodiscard]] virtual CaptureResult captureWindow(WindowId window,
                                                      WindowImageOptions options) = 0;
};

} // namespace pelistra
