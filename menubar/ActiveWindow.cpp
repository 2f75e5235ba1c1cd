#include "menubar/ActiveWindow.h"

#include "menubar/ForeignText.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <utility>

namespace pelistra::menubar {

namespace {

constexpr std::size_t nameLimit = 64;
constexpr std::size_t titleLimit = 256;
constexpr char escape = '\x1b';

std::string applicationName(const std::optional<x11::PropertyValue>& windowClass) {
    if (!windowClass) {
        return {};
    }
    const std::vector<std::string> parts = windowClass->texts();
    if (parts.size() > 1 && !parts[1].empty()) {
        return cleanText(parts[1], nameLimit);
    }
    return parts.empty() ? "" : cleanText(parts[0], nameLimit);
}

} // namespace

bool ActiveWindow::concerns(const xcb_property_notify_event_t& event) const {
    if (event.window == server_->root()) {
        return event.atom == server_->atom(Atom::NetActiveWindow) ||
               event.atom == server_->atom(Atom::NetClientList);
    }
    return event.window == window_ &&
           (event.atom == server_->atom(Atom::NetWmName) || event.atom == XCB_ATOM_WM_NAME ||
            event.atom == XCB_ATOM_WM_CLASS);
}

bool ActiveWindow::refresh() {
    follow(current());
    BarTitle title = window_ == XCB_NONE ? BarTitle{} : read();
    if (title == title_) {
        return false;
    }
    title_ = std::move(title);
    return true;
}

// Some window managers go on naming a window that was closed while nothing else could take the
// focus, so it counts only as long as it is one of the windows that they manage.
xcb_window_t ActiveWindow::current() const {
    const x11::Connection& connection = server_->connection();
    const auto request = [&](Atom name) {
        return requestProperty(connection, server_->root(), server_->atom(name), XCB_ATOM_WINDOW);
    };
    const auto activeRequest = request(Atom::NetActiveWindow);
    const auto managedRequest = request(Atom::NetClientList);
    const auto active = readProperty(connection, activeRequest);
    const auto managed = readProperty(connection, managedRequest);
    const std::vector<std::uint32_t> words =
        active ? active->words() : std::vector<std::uint32_t>{};
    if (words.empty()) {
        return XCB_NONE;
    }
    if (managed) {
        const std::vector<std::uint32_t> windows = managed->words();
        if (std::ranges::find(windows, words.front()) == windows.end()) {
            return XCB_NONE;
        }
    }
    return words.front();
}

void ActiveWindow::follow(xcb_window_t window) {
    if (window == window_) {
        return;
    }
    const auto listen = [this](xcb_window_t to, std::uint32_t events) {
        // What is asked of docked windows is the docking's business.
        if (to != XCB_NONE && to != server_->root() && items_->find(to) == nullptr) {
            xcb_change_window_attributes(server_->xcb(), to, XCB_CW_EVENT_MASK, &events);
        }
    };
    listen(std::exchange(window_, window), XCB_EVENT_MASK_NO_EVENT);
    listen(window_, XCB_EVENT_MASK_PROPERTY_CHANGE);
}

BarTitle ActiveWindow::read() const {
    const x11::Connection& connection = server_->connection();
    const auto classRequest = requestProperty(connection, window_, XCB_ATOM_WM_CLASS);
    const auto nameRequest = requestProperty(connection, window_, server_->atom(Atom::NetWmName));
    const auto oldNameRequest = requestProperty(connection, window_, XCB_ATOM_WM_NAME);
    const auto windowClass = readProperty(connection, classRequest);
    const auto name = readProperty(connection, nameRequest);
    const auto oldName = readProperty(connection, oldNameRequest);
    BarTitle title{.application = applicationName(windowClass), .title = {}};
    if (name) {
        title.title = cleanText(name->text(), titleLimit);
    } else if (oldName && oldName->type == server_->atom(Atom::Utf8String)) {
        title.title = cleanText(oldName->text(), titleLimit);
    } else if (oldName && oldName->text().find(escape) == std::string::npos) {
        // STRING, or COMPOUND_TEXT that switches to no other character set. What does switch could
        // only be shown as gibberish.
        title.title = cleanLatinText(oldName->text(), titleLimit);
    }
    return title;
}

} // namespace pelistra::menubar
