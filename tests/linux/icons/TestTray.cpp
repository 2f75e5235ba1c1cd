#include "tests/linux/icons/TestTray.h"

#include <stdexcept>

namespace pelistra::testing {

namespace {

xcb_window_t createWindow(const XClient& x, xcb_window_t parent, int left, int width, int height,
                          std::uint32_t eventMask = 0) {
    const xcb_window_t window = x.connection().newId();
    xcb_create_window(x.get(), XCB_COPY_FROM_PARENT, window, parent,
                      static_cast<std::int16_t>(left), 0, static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &eventMask);
    return window;
}

} // namespace

TestTray::TestTray(const std::string& display, Kind kind)
    : x_(display), kind_(kind), owner_(createWindow(x_, x_.root(), -10, 1, 1)),
      bar_(createWindow(x_, x_.root(), 0, x_.rootFrame().width, 28)) {
    const std::string selection =
        "_NET_SYSTEM_TRAY_S" + std::to_string(x_.connection().screenNumber());
    // No window manager moves it.
    const std::uint32_t unmanaged = 1;
    xcb_change_window_attributes(x_.get(), bar_, XCB_CW_OVERRIDE_REDIRECT, &unmanaged);
    xcb_map_window(x_.get(), bar_);
    xcb_set_selection_owner(x_.get(), owner_, x_.atom(selection), XCB_CURRENT_TIME);
    if (kind_ == Kind::Ours) {
        publish({});
    }
    x_.sync();
    if (x_.trayOwner() != owner_) {
        throw std::runtime_error("the tray selection has another owner");
    }
}

void TestTray::embed(xcb_window_t icon, int x, int width, int height) {
    const xcb_window_t container = createWindow(x_, bar_, x, width, height);
    xcb_map_window(x_.get(), container);
    xcb_reparent_window(x_.get(), icon, container, 0, 0);
    xcb_map_window(x_.get(), icon);
    items_.push_back(icon);
    if (kind_ == Kind::Ours) {
        publish(items_);
    }
    x_.sync();
}

void TestTray::publish(const std::vector<xcb_window_t>& items) {
    x11::setWords(x_.connection(), owner_, x_.atom("_PELISTRA_MENUBAR_ITEMS"), XCB_ATOM_WINDOW,
                  items);
    x_.sync();
}

void TestTray::publishDetails(const std::vector<x11::PublishedItem>& items) {
    x11::setText(x_.connection(), owner_, x_.atom("_PELISTRA_MENUBAR_ITEM_DETAILS"),
                 x_.atom("UTF8_STRING"), x11::publishedText(items).value());
    x_.sync();
}

void TestTray::setScale(std::uint32_t hundredths) {
    x11::setWords(x_.connection(), owner_, x_.atom("_PELISTRA_MENUBAR_SCALE"), XCB_ATOM_CARDINAL,
                  std::vector<std::uint32_t>{hundredths});
    x_.sync();
}

void TestTray::setSerial(std::uint32_t serial) {
    x11::setWords(x_.connection(), owner_, x_.atom("_PELISTRA_MENUBAR_SERIAL"), XCB_ATOM_CARDINAL,
                  std::vector<std::uint32_t>{serial});
    x_.sync();
}

xcb_window_t IconClient::makeWindow(int width, int height, std::uint32_t eventMask) {
    const xcb_window_t window = createWindow(x_, x_.root(), 0, width, height, eventMask);
    x_.sync();
    return window;
}

void IconClient::setText(xcb_window_t window, const std::string& property, const std::string& type,
                         std::string_view bytes) {
    x11::setText(x_.connection(), window, x_.atom(property), x_.atom(type), bytes);
    x_.sync();
}

void IconClient::setWords(xcb_window_t window, const std::string& property, const std::string& type,
                          const std::vector<std::uint32_t>& values) {
    x11::setWords(x_.connection(), window, x_.atom(property), x_.atom(type), values);
    x_.sync();
}

} // namespace pelistra::testing
