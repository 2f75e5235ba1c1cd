#pragma once

#include "tests/desktop/harness/XClient.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pelistra::testing {

// Asks the tray that is there now to dock a window, whoever it belongs to; false when there is no
// tray.
bool requestDock(XClient& from, xcb_window_t window);

// A tray icon of the tests' own: an XEmbed client that can behave well, and badly. It has its own
// connection, so that its death is the death of a client.
class TrayClient {
public:
    struct Options {
        std::string name = "TrayClient";
        int width = 24;
        int height = 24;
        std::uint32_t colour = 0x3070c0;
        // Of 32 bits, with an alpha channel, and opaque.
        bool hasAlpha = false;
        bool withEmbedInfo = true;
        bool mappedFlag = true;
        std::optional<std::uint32_t> preferredPosition = {};
        std::optional<std::uint32_t> processId = {};
    };

    TrayClient(const std::string& display, const Options& options);

    [[nodiscard]] XClient& x() { return x_; }
    [[nodiscard]] xcb_window_t window() const { return window_; }

    // Sends the dock request to the tray that is there now; false when there is none.
    bool requestDock();
    // Handles the events that have come: paints on expose, notes what the tray says. Call it while
    // waiting.
    void handleEvents();
    // Handles events until the window lies in a tray and is viewable.
    [[nodiscard]] bool waitUntilDocked();
    // True when the tray has sent XEMBED_EMBEDDED_NOTIFY.
    [[nodiscard]] bool wasEmbedded() const { return embedded_; }

    void setTitle(std::string_view bytes, const std::string& type);
    void setMappedFlag(bool mapped);
    // Paints itself in that colour, now and from now on.
    void changeColour(std::uint32_t colour);
    // Asks for a width by size hints and by a resize request.
    void askForWidth(std::uint32_t width);
    // Only the resize request.
    void requestSize(std::uint32_t width, std::uint32_t height);
    void destroyWindow();
    // Closes the connection at once, as a crash of the program would.
    void die();

private:
    void paint();
    void createWindow(const Options& options);

    XClient x_;
    xcb_window_t window_;
    xcb_gcontext_t colour_;
    bool embedded_ = false;
};

} // namespace pelistra::testing
