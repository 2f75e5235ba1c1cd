#include "platform/x11/Connection.h"

#include <cstdlib>

#include <xcb/xcb_aux.h>

namespace pelistra::x11 {

namespace {

std::string nameOf(const std::string& requested) {
    if (!requested.empty()) {
        return requested;
    }
    const char* environment = std::getenv("DISPLAY"); // NOLINT(concurrency-mt-unsafe)
    return environment != nullptr ? environment : "";
}

std::string reasonFor(int error, const std::string& display) {
    if (display.empty()) {
        return "no X display: DISPLAY is not set";
    }
    switch (error) {
    case XCB_CONN_CLOSED_PARSE_ERR:
        return "'" + display + "' is not the name of an X display";
    case XCB_CONN_CLOSED_INVALID_SCREEN:
        return "the X display '" + display + "' has no such screen";
    default:
        return "cannot connect to the X display '" + display + "'";
    }
}

} // namespace

std::unique_ptr<Connection> Connection::open(const std::string& displayName, Failure& failure) {
    const std::string display = nameOf(displayName);
    int screenNumber = 0;
    xcb_connection_t* connection =
        xcb_connect(displayName.empty() ? nullptr : displayName.c_str(), &screenNumber);
    if (const int error = xcb_connection_has_error(connection); error != 0) {
        xcb_disconnect(connection);
        failure.message = reasonFor(error, display);
        return nullptr;
    }
    xcb_screen_t* screen = xcb_aux_get_screen(connection, screenNumber);
    if (screen == nullptr) {
        xcb_disconnect(connection);
        failure.message = reasonFor(XCB_CONN_CLOSED_INVALID_SCREEN, display);
        return nullptr;
    }
    return std::unique_ptr<Connection>(new Connection(connection, screen, screenNumber));
}

Connection::~Connection() {
    xcb_disconnect(connection_);
}

int Connection::fileDescriptor() const {
    return xcb_get_file_descriptor(connection_);
}

xcb_window_t Connection::newId() const {
    return xcb_generate_id(connection_);
}

EventPtr Connection::pollEvent() const {
    return EventPtr(xcb_poll_for_event(connection_));
}

EventPtr Connection::pollQueuedEvent() const {
    return EventPtr(xcb_poll_for_queued_event(connection_));
}

void Connection::flush() const {
    xcb_flush(connection_);
}

bool Connection::isAlive() const {
    return xcb_connection_has_error(connection_) == 0;
}

Connection::Visual Connection::visual(xcb_visualid_t id) const {
    for (auto depth = xcb_screen_allowed_depths_iterator(screen_); depth.rem != 0;
         xcb_depth_next(&depth)) {
        for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem != 0;
             xcb_visualtype_next(&type)) {
            if (type.data->visual_id == id) {
                return {.type = type.data, .depth = depth.data->depth};
            }
        }
    }
    return {};
}

Connection::Visual Connection::alphaVisual() const {
    for (auto depth = xcb_screen_allowed_depths_iterator(screen_); depth.rem != 0;
         xcb_depth_next(&depth)) {
        if (depth.data->depth != alphaDepth) {
            continue;
        }
        for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem != 0;
             xcb_visualtype_next(&type)) {
            if (type.data->_class == XCB_VISUAL_CLASS_TRUE_COLOR) {
                return {.type = type.data, .depth = alphaDepth};
            }
        }
    }
    return {};
}

} // namespace pelistra::x11
