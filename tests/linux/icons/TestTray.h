#pragma once

#include "platform/x11/PublishedItems.h"
#include "tests/desktop/harness/XClient.h"

#include <string>
#include <string_view>
#include <vector>

namespace pelistra::testing {

// A tray made of nothing but the windows and properties that others see of one: it owns the
// selection and embeds windows on demand.
class TestTray {
public:
    enum class Kind { Ours, Foreign };

    // Takes the tray selection of the display; throws std::runtime_error when it cannot.
    TestTray(const std::string& display, Kind kind);

    [[nodiscard]] XClient& x() { return x_; }
    [[nodiscard]] xcb_window_t owner() const { return owner_; }
    [[nodiscard]] xcb_window_t bar() const { return bar_; }

    // Embeds a window in a container of its own at that place of the bar. Ours lists it behind the
    // others.
    void embed(xcb_window_t icon, int x, int width, int height);
    // What ours says is in it.
    void publish(const std::vector<xcb_window_t>& items);
    // What ours says of each of them.
    void publishDetails(const std::vector<x11::PublishedItem>& items);
    void setScale(std::uint32_t hundredths);
    // The count of changes that ours keeps.
    void setSerial(std::uint32_t serial);

private:
    XClient x_;
    Kind kind_;
    xcb_window_t owner_;
    xcb_window_t bar_;
    std::vector<xcb_window_t> items_;
};

// A program with windows that it could show in a tray.
class IconClient {
public:
    explicit IconClient(const std::string& display) : x_(display) {}

    [[nodiscard]] XClient& x() { return x_; }
    [[nodiscard]] xcb_window_t makeWindow(int width, int height, std::uint32_t eventMask = 0);
    void setText(xcb_window_t window, const std::string& property, const std::string& type,
                 std::string_view bytes);
    void setWords(xcb_window_t window, const std::string& property, const std::string& type,
                  const std::vector<std::uint32_t>& values);

private:
    XClient x_;
};

} // namespace pelistra::testing
