#include "menubar/TraySelection.h"

#include "menubar/DockedItem.h"
#include "menubar/ForeignText.h"
#include "menubar/Log.h"
#include "menubar/notifier/ProgramName.h"
#include "platform/posix/Translation.h"
#include "platform/x11/Clients.h"
#include "platform/x11/Properties.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstring>
#include <optional>

#include <poll.h>

namespace pelistra::menubar {

namespace {

constexpr std::uint8_t bitsOfByte = 8;
constexpr std::size_t nameLimit = 64;
// How long the tray that is being replaced may take to let its icons go.
constexpr std::chrono::seconds patience{3};

// Waits for the next event; null when there is none in time or the connection broke.
x11::EventPtr nextEvent(const x11::Connection& connection,
                        std::chrono::steady_clock::time_point deadline) {
    connection.flush();
    while (connection.isAlive()) {
        if (x11::EventPtr event = connection.pollEvent()) {
            return event;
        }
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            return nullptr;
        }
        pollfd descriptor{.fd = connection.fileDescriptor(), .events = POLLIN, .revents = 0};
        ::poll(&descriptor, 1, static_cast<int>(left.count()));
    }
    return nullptr;
}

} // namespace

TraySelection::TraySelection(const Server& server)
    : server_(&server), window_(server.xcb(), server.connection().newId()) {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(server.xcb(), XCB_COPY_FROM_PARENT, window_.id(), server.root(), -1, -1, 1, 1,
                      0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                      &events);
    x11::setText(server.connection(), window_.id(), XCB_ATOM_WM_NAME, XCB_ATOM_STRING,
                 "pelistra-menubar tray");
    x11::setText(server.connection(), window_.id(), XCB_ATOM_WM_CLASS, XCB_ATOM_STRING,
                 {"pelistra-menubar\0Pelistra-menubar\0", 34});
}

std::unique_ptr<TraySelection> TraySelection::acquire(const Server& server, bool replace,
                                                      std::string& failure) {
    std::unique_ptr<TraySelection> tray(new TraySelection(server));
    const xcb_window_t previous = tray->currentOwner();
    if (previous != XCB_NONE && !replace) {
        failure = posix::translated("the system tray of this screen belongs to %1; end it, or use "
                                    "--replace to take over from it",
                                    {tray->describeOwner(previous)});
        return nullptr;
    }
    if (previous != XCB_NONE) {
        const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(server.xcb(), previous, XCB_CW_EVENT_MASK, &events);
    }
    if (!tray->readServerTime()) {
        failure = x11::Connection::noAnswer();
        return nullptr;
    }
    const xcb_atom_t selection = server.atom(Atom::TraySelection);
    xcb_set_selection_owner(server.xcb(), tray->owner(), selection, tray->time_);
    if (tray->currentOwner() != tray->owner()) {
        failure = posix::translated(
            "another program took the system tray of this screen at the same moment");
        return nullptr;
    }
    if (previous != XCB_NONE) {
        tray->waitForEnd(previous);
    }
    return tray;
}

bool TraySelection::readServerTime() {
    // A change of a property of ours is the one thing that always comes back with the time.
    xcb_change_property(server_->xcb(), XCB_PROP_MODE_APPEND, owner(), XCB_ATOM_WM_NAME,
                        XCB_ATOM_STRING, bitsOfByte, 0, nullptr);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (const x11::EventPtr event = nextEvent(server_->connection(), deadline)) {
        if (x11::typeOf(*event) != XCB_PROPERTY_NOTIFY) {
            continue;
        }
        const auto& change = x11::eventAs<xcb_property_notify_event_t>(*event);
        if (change.window == owner()) {
            time_ = change.time;
            return true;
        }
    }
    return false;
}

xcb_window_t TraySelection::currentOwner() const {
    const auto reply = server_->connection().take<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(server_->xcb(), server_->atom(Atom::TraySelection)));
    return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

std::string TraySelection::describeOwner(xcb_window_t owner) const {
    const auto classRequest = requestProperty(server_->connection(), owner, XCB_ATOM_WM_CLASS);
    const auto nameRequest = requestProperty(server_->connection(), owner, XCB_ATOM_WM_NAME);
    const auto windowClass = readProperty(server_->connection(), classRequest);
    const auto windowName = readProperty(server_->connection(), nameRequest);
    const auto process = x11::processOf(server_->connection(), owner);
    std::string name = process ? programName(*process) : "";
    if (name.empty() && windowClass) {
        name = cleanText(windowClass->text(), nameLimit);
    }
    if (name.empty() && windowName) {
        name = cleanText(windowName->text(), nameLimit);
    }
    name = name.empty() ? posix::translated("another program") : posix::translated("'%1'", {name});
    return process ? posix::translated("%1 (process %2)", {name, std::to_string(*process)})
                   : posix::translated("%1 (window %2)", {name, hexadecimal(owner)});
}

void TraySelection::waitForEnd(xcb_window_t owner) const {
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (const x11::EventPtr event = nextEvent(server_->connection(), deadline)) {
        if (x11::typeOf(*event) == XCB_DESTROY_NOTIFY &&
            x11::eventAs<xcb_destroy_notify_event_t>(*event).window == owner) {
            return;
        }
        // It had gone before we could ask to be told.
        const bool gone = x11::typeOf(*event) == 0 &&
                          x11::eventAs<xcb_generic_error_t>(*event).resource_id == owner;
        if (gone) {
            return;
        }
    }
    log("the previous tray has not ended yet; going on without waiting");
}

void TraySelection::announce() const {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = x11::bitsOfWord;
    message.window = server_->root();
    message.type = server_->atom(Atom::Manager);
    const std::array<std::uint32_t, 5> words{time_, server_->atom(Atom::TraySelection), owner(), 0,
                                             0};
    std::ranges::copy(words, message.data.data32);
    xcb_send_event(server_->xcb(), 0, server_->root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

bool TraySelection::isLoss(const xcb_selection_clear_event_t& event) const {
    return event.selection == server_->atom(Atom::TraySelection) && event.owner == owner();
}

} // namespace pelistra::menubar
