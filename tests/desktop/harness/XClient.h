#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/Properties.h"
#include "tests/desktop/harness/Picture.h"

#include <array>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace pelistra::testing {

// A window's rectangle in root coordinates, device pixels, without its border.
struct WindowFrame {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] int right() const { return x + width; }
    [[nodiscard]] int midX() const { return x + (width / 2); }
    [[nodiscard]] int midY() const { return y + (height / 2); }
    bool operator==(const WindowFrame&) const = default;
};

void PrintTo(const WindowFrame& frame, std::ostream* stream);

struct PointerState {
    int x = 0;
    int y = 0;
    // Buttons and modifiers as in a core event's state.
    std::uint16_t mask = 0;

    bool operator==(const PointerState&) const = default;
};

// Looks at an X server from outside, as any other client would. Every operation is a round trip of
// its own, so what it returns is the server's state now.
class XClient {
public:
    // Throws std::runtime_error when the display cannot be opened.
    explicit XClient(const std::string& display);

    [[nodiscard]] const x11::Connection& connection() const { return *connection_; }
    [[nodiscard]] xcb_connection_t* get() const { return connection_->get(); }
    [[nodiscard]] xcb_window_t root() const { return connection_->root(); }
    [[nodiscard]] xcb_atom_t atom(const std::string& name);
    // Returns when the server has handled everything sent so far.
    void sync() const;

    [[nodiscard]] bool exists(xcb_window_t window) const;
    // Empty when the window is gone.
    [[nodiscard]] std::optional<WindowFrame> frame(xcb_window_t window) const;
    [[nodiscard]] WindowFrame rootFrame() const;
    // Mapped itself, whatever its ancestors are.
    [[nodiscard]] bool isMapped(xcb_window_t window) const;
    // Mapped with all its ancestors.
    [[nodiscard]] bool isViewable(xcb_window_t window) const;
    [[nodiscard]] xcb_window_t parent(xcb_window_t window) const;
    // Bottom to top.
    [[nodiscard]] std::vector<xcb_window_t> children(xcb_window_t window) const;
    // The child of the root that the window is or lies in.
    [[nodiscard]] xcb_window_t topLevel(xcb_window_t window) const;
    // True when the top-level window of `upper` is stacked above that of `lower`.
    [[nodiscard]] bool isAbove(xcb_window_t upper, xcb_window_t lower) const;

    [[nodiscard]] std::optional<x11::PropertyValue> windowProperty(xcb_window_t window,
                                                                   const std::string& name);
    // The values of a 32-bit property; empty without one.
    [[nodiscard]] std::vector<std::uint32_t> words(xcb_window_t window, const std::string& name);
    // _NET_WM_NAME, else WM_NAME.
    [[nodiscard]] std::string title(xcb_window_t window);
    // WM_CLASS: instance and class.
    [[nodiscard]] std::pair<std::string, std::string> windowClass(xcb_window_t window);
    [[nodiscard]] std::optional<std::uint32_t> claimedProcess(xcb_window_t window);
    // True when the window's property, a list of atoms, contains the atom of that name.
    [[nodiscard]] bool hasAtom(xcb_window_t window, const std::string& property,
                               const std::string& name);

    // The windows that the window manager looks after, oldest first (_NET_CLIENT_LIST).
    [[nodiscard]] std::vector<xcb_window_t> managedWindows();
    // The managed window with exactly that title.
    [[nodiscard]] std::optional<xcb_window_t> managedWindow(std::string_view title);

    // The top-level windows that are viewable, managed or not, bottom to top.
    [[nodiscard]] std::vector<xcb_window_t> shownTopLevels() const;
    // Those of them that are menus.
    [[nodiscard]] std::vector<xcb_window_t> shownMenus();

    // Asks the window manager to make a window cover its whole screen, or to let it go back.
    void requestFullScreen(xcb_window_t window, bool fullScreen);
    // Asks the window manager to make a window the active one, as a taskbar does.
    void requestActivation(xcb_window_t window);
    // Asks the window manager to minimise a window.
    void requestMinimise(xcb_window_t window);
    // Asks a window to close (WM_DELETE_WINDOW), as the window manager's button does.
    void requestClose(xcb_window_t window);

    [[nodiscard]] xcb_window_t selectionOwner(const std::string& name);
    [[nodiscard]] PointerState pointer() const;
    [[nodiscard]] xcb_window_t focus() const;

    // What is on the screen inside a rectangle of the root, cut to the root. Asked again and again
    // it is what a compositor comes to show.
    [[nodiscard]] Picture capture(const WindowFrame& area);
    [[nodiscard]] Picture captureRoot() { return capture(rootFrame()); }

    // The tray: the owner of the selection, or XCB_WINDOW_NONE.
    [[nodiscard]] xcb_window_t trayOwner();
    // The docked windows in the bar's order, left to right, as the bar says; empty without a bar.
    [[nodiscard]] std::vector<xcb_window_t> barItems();
    // The bar's own window; XCB_WINDOW_NONE without a bar.
    [[nodiscard]] xcb_window_t barWindow();
    // The docked window with that name: WM_CLASS instance, class, or title.
    [[nodiscard]] std::optional<xcb_window_t> barItem(std::string_view name);
    // The frames of barItems(), in their order; windows that vanish are left out.
    [[nodiscard]] std::vector<WindowFrame> barItemFrames();

private:
    void wakeCompositor();
    void sendMessage(xcb_window_t to, std::uint32_t eventMask, xcb_window_t about,
                     const std::string& type, const std::array<std::uint32_t, 5>& values);

    std::unique_ptr<x11::Connection> connection_;
    std::map<std::string, xcb_atom_t> atoms_;
};

} // namespace pelistra::testing
