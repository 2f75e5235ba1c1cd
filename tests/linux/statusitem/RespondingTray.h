#pragma once

#include "tests/desktop/harness/WaitFor.h"
#include "tests/desktop/harness/XClient.h"

#include <array>
#include <concepts>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// A tray that lives in the test: it takes what asks to be docked, grants what widths are asked for,
// and lays out along the screen's top.
class RespondingTray {
public:
    enum class Order : std::uint8_t {
        // In the order of their coming.
        FromRightEdge,
        FromLeftEdge,
        // From the left edge by the instance of their class.
        ByName,
    };
    struct Options {
        // Publish what only our own menu bar does; the scale in hundredths.
        std::optional<std::uint32_t> menuBarScale = 100;
        // Ask for icons with an alpha channel, on this background.
        bool alpha = false;
        Order order = Order::FromRightEdge;
        std::uint32_t background = 0xffffff;
        // Red, green and blue of texts, 16 bits each.
        std::array<std::uint32_t, 3> foreground{0, 0, 0};
    };

    // Takes the tray selection and announces itself. Throws std::runtime_error when it cannot.
    RespondingTray(const std::string& display, const Options& options);
    explicit RespondingTray(const std::string& display) : RespondingTray(display, Options{}) {}
    RespondingTray(const RespondingTray&) = delete;
    RespondingTray& operator=(const RespondingTray&) = delete;
    // As if it had been killed: the server hands the icons back to the root.
    ~RespondingTray() = default;

    // Ends in order: lets go of the icons, then of the selection.
    void end();

    [[nodiscard]] XClient& x() { return x_; }
    [[nodiscard]] xcb_window_t owner() const { return owner_; }
    [[nodiscard]] int height() const { return height_; }

    // Does what clients ask for. Every wait of a test goes through waitFor below.
    void handleEvents();
    template <std::predicate Condition>
    [[nodiscard]] bool waitFor(Condition condition, std::chrono::milliseconds bound = patience) {
        return testing::waitFor(
            [&] {
                handleEvents();
                return condition();
            },
            bound);
    }
    // Answers clients for that long.
    void serve(std::chrono::milliseconds time) {
        static_cast<void>(waitFor([] { return false; }, time));
    }

    // In the order in which they were docked; windows that are gone are not among them.
    [[nodiscard]] const std::vector<xcb_window_t>& docked() const { return docked_; }
    [[nodiscard]] std::optional<xcb_window_t> item(const std::string& name);
    // Throws std::runtime_error when it does not come.
    [[nodiscard]] xcb_window_t waitForItem(const std::string& name);
    [[nodiscard]] WindowFrame frameOf(xcb_window_t icon);
    // Waits until the item has that width.
    [[nodiscard]] bool waitForWidth(xcb_window_t icon, int width);

    // Whether sizes that are asked for are given.
    void setGranting(bool granting) { granting_ = granting; }
    // How often icons have asked for a size.
    [[nodiscard]] int sizeRequests() const { return sizeRequests_; }
    // The greatest x at which an icon has ever stood.
    [[nodiscard]] int farthest() const { return farthest_; }

    void setForeground(const std::array<std::uint32_t, 3>& foreground);
    void setMenuBarScale(std::uint32_t hundredths);
    // Throws an icon out.
    void eject(xcb_window_t icon);

private:
    struct Place {
        xcb_window_t icon = XCB_WINDOW_NONE;
        xcb_window_t container = XCB_WINDOW_NONE;
        int width = 0;
    };

    void publish();
    void dock(xcb_window_t icon);
    void forget(xcb_window_t icon);
    void layOut();
    [[nodiscard]] xcb_window_t makeContainer();
    void sendMessage(xcb_window_t to, const std::string& type,
                     const std::array<std::uint32_t, 5>& words, std::uint32_t mask);

    XClient x_;
    Options options_;
    xcb_window_t owner_;
    xcb_window_t bar_;
    int height_;
    x11::Connection::Visual visual_;
    xcb_colormap_t colormap_;
    std::vector<Place> places_;
    std::vector<xcb_window_t> docked_;
    bool granting_ = true;
    int sizeRequests_ = 0;
    int farthest_ = 0;
};

} // namespace pelistra::testing
