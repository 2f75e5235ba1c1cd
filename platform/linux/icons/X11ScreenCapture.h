#pragma once

#include "platform/ScreenCapture.h"
#include "platform/linux/images/Pixels.h"
#include "platform/x11/Connection.h"
#include "platform/x11/Replies.h"

#include <chrono>
#include <optional>

namespace pelistra::linux {

// Pictures of windows through the Composite extension, in device pixels. X11 asks nobody for
// permission, so it is granted wherever the extension is.
//
// A window that somebody has redirected, or that lies in one (our bar redirects the containers of
// its icons), has its pixels wherever it is. Any other window is redirected for the moment of the
// picture, which shows what is on the screen at its place: what covers it is in the picture, and a
// part beyond the edge of the screen is blank.
class X11ScreenCapture final : public ScreenCapture {
public:
    // How long one picture may take altogether.
    static constexpr std::chrono::milliseconds patience{500};
    // A window of more pixels than this is no icon; taking its picture would only cost memory.
    static constexpr std::uint32_t mostPixels = 1U << 22U;

    // The connection must outlive this object, and nobody else waits on it meanwhile.
    explicit X11ScreenCapture(const x11::Connection& connection);

    [[nodiscard]] bool preflightAccess() override { return hasComposite_; }
    [[nodiscard]] bool requestAccess() override { return hasComposite_; }
    // The options change nothing: X11 windows of the tray have no frame, and there is one
    // resolution. NoImage for a window that is gone, has no size or no pixels of its own, and for a
    // server that does not answer in time.
    [[nodiscard]] CaptureResult captureWindow(WindowId window, WindowImageOptions options) override;

    // The pixels alone; an empty picture when there are none.
    [[nodiscard]] Pixels pixelsOf(WindowId window);

private:
    struct Source;

    [[nodiscard]] std::optional<Source> describe(WindowId window);
    // What the pixmap of a redirected window holds there; asks only.
    [[nodiscard]] xcb_get_image_cookie_t askRedirected(WindowId redirected, int x, int y,
                                                       const Source& source);
    [[nodiscard]] Pixels fromTemporaryRedirection(WindowId window, const Source& source);
    [[nodiscard]] Pixels takePixels(xcb_get_image_cookie_t request, const Source& source);
    xcb_pixmap_t nameWindowPixmap(WindowId window) const;
    void freePixmap(xcb_pixmap_t pixmap) const;

    const x11::Connection* connection_;
    x11::Replies replies_;
    bool hasComposite_ = false;
};

} // namespace pelistra::linux
