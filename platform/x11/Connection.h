#pragma once

#include "platform/x11/Handles.h"

#include <cstdint>
#include <memory>
#include <string>

namespace pelistra::x11 {

// A connection to the X server, closed on destruction. Never null: opening one that fails says why.
class Connection {
public:
    struct Failure {
        // A sentence for the user, naming the display.
        std::string message;
    };

    // Opens the named display, or the one in $DISPLAY for an empty name. Null on failure, with the
    // reason in `failure`.
    [[nodiscard]] static std::unique_ptr<Connection> open(const std::string& displayName,
                                                          Failure& failure);

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    [[nodiscard]] xcb_connection_t* get() const { return connection_; }
    // The file descriptor to poll. Events that XCB has queued already do not wake it: drain
    // pollEvent() before waiting on it.
    [[nodiscard]] int fileDescriptor() const;
    [[nodiscard]] const xcb_screen_t& screen() const { return *screen_; }
    [[nodiscard]] int screenNumber() const { return screenNumber_; }
    [[nodiscard]] xcb_window_t root() const { return screen_->root; }
    // An id for a new resource of the server (a window, a pixmap, ...), not used by any other.
    [[nodiscard]] xcb_window_t newId() const;

    // The next event, or null when none is queued; errors of unchecked requests come as events of
    // type 0.
    [[nodiscard]] EventPtr pollEvent() const;
    // The same for what has been read from the server already; asks the system nothing.
    [[nodiscard]] EventPtr pollQueuedEvent() const;
    // Sends what has been asked for and not been sent yet.
    void flush() const;
    // False once the server has gone or has refused the connection.
    [[nodiscard]] bool isAlive() const;

    // The visual with the given id on this screen and its depth; null type when there is none.
    struct Visual {
        const xcb_visualtype_t* type = nullptr;
        std::uint8_t depth = 0;
    };
    [[nodiscard]] Visual visual(xcb_visualid_t id) const;
    // The bits of a pixel with an alpha channel.
    static constexpr std::uint8_t alphaDepth = 32;
    // The screen's true-colour visual with an alpha channel; null type when there is none.
    [[nodiscard]] Visual alphaVisual() const;

private:
    Connection(xcb_connection_t* connection, xcb_screen_t* screen, int screenNumber)
        : connection_(connection), screen_(screen), screenNumber_(screenNumber) {}

    xcb_connection_t* connection_;
    xcb_screen_t* screen_;
    int screenNumber_;
};

} // namespace pelistra::x11
