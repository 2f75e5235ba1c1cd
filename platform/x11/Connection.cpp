#include "platform/x11/Connection.h"

#include "platform/posix/Translation.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <poll.h>
#include <xcb/randr.h>
#include <xcb/xcb_aux.h>
#include <xcb/xcbext.h>

namespace pelistra::x11 {

namespace {

std::string nameOf(const std::string& requested) {
    if (!requested.empty()) {
        return requested;
    }
    const char* environment = std::getenv("DISPLAY");
    return environment != nullptr ? environment : "";
}

std::string reasonFor(int error, const std::string& display) {
    if (display.empty()) {
        return posix::translated("no X display: DISPLAY is not set");
    }
    switch (error) {
    case XCB_CONN_CLOSED_PARSE_ERR:
        return posix::translated("'%1' is not the name of an X display", {display});
    case XCB_CONN_CLOSED_INVALID_SCREEN:
        return posix::translated("the X display '%1' has no such screen", {display});
    default:
        return posix::translated("cannot connect to the X display '%1'", {display});
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
    // Asked for when a large request is first sent, which must not have to wait for it.
    xcb_prefetch_maximum_request_length(connection);
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

bool Connection::hasMade(xcb_connection_t* connection, std::uint32_t id) {
    const xcb_setup_t* const setup = xcb_get_setup(connection);
    return (id & ~setup->resource_id_mask) == setup->resource_id_base;
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

void Connection::setPatience(std::chrono::milliseconds patience, int stopDescriptor) {
    patience_ = patience;
    stopDescriptor_ = stopDescriptor;
}

Connection::Answer Connection::await(unsigned sequence, TimePoint deadline) const {
    if (isStalled()) {
        ++unanswered_;
        xcb_discard_reply(connection_, sequence);
        return {};
    }
    flush();
    Answer answer;
    xcb_generic_error_t* error = nullptr;
    while (xcb_poll_for_reply(connection_, sequence, &answer.reply, &error) == 0) {
        if (!waitForInput(deadline)) {
            ++unanswered_;
            owed_ = sequence;
            return {};
        }
    }
    const ErrorPtr ownedError(error);
    answer.hasCome = isAlive();
    return answer;
}

bool Connection::waitForInput(TimePoint deadline) const {
    using std::chrono::milliseconds;
    std::array<pollfd, 2> descriptors{
        pollfd{.fd = fileDescriptor(), .events = POLLIN, .revents = 0},
        pollfd{.fd = stopDescriptor_, .events = POLLIN, .revents = 0}};
    while (true) {
        const auto left =
            std::chrono::ceil<milliseconds>(deadline - std::chrono::steady_clock::now());
        const int ready = ::poll(descriptors.data(), descriptors.size(),
                                 static_cast<int>(std::max<milliseconds::rep>(left.count(), 0)));
        if (ready > 0) {
            return descriptors[0].revents != 0;
        }
        if (ready == 0 || errno != EINTR) {
            return false;
        }
    }
}

bool Connection::isStalled() const {
    if (!owed_) {
        return false;
    }
    void* reply = nullptr;
    xcb_generic_error_t* error = nullptr;
    if (xcb_poll_for_reply(connection_, *owed_, &reply, &error) == 0) {
        return true;
    }
    const Owned<void> ownedReply(reply);
    const ErrorPtr ownedError(error);
    owed_.reset();
    hasRecovered_ = true;
    return false;
}

bool Connection::hasRecovered() const {
    return !isStalled() && std::exchange(hasRecovered_, false);
}

bool Connection::hasAccepted(xcb_void_cookie_t cookie) const {
    // With the answer to a later question there is an error of this one, or none.
    if (!sync()) {
        xcb_discard_reply(connection_, cookie.sequence);
        return false;
    }
    void* reply = nullptr;
    xcb_generic_error_t* rawError = nullptr;
    static_cast<void>(xcb_poll_for_reply(connection_, cookie.sequence, &reply, &rawError));
    const ErrorPtr error(rawError);
    return error == nullptr;
}

std::string Connection::noAnswer() {
    return posix::translated("the X server does not answer");
}

void Connection::ignoreErrorOf(xcb_void_cookie_t cookie) const {
    xcb_discard_reply(connection_, cookie.sequence);
}

bool Connection::sync() const {
    return take<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_)) != nullptr;
}

void Connection::learn(std::initializer_list<xcb_extension_t*> extensions) const {
    for (xcb_extension_t* const extension : extensions) {
        xcb_prefetch_extension_data(connection_, extension);
    }
    if (sync()) {
        knownExtensions_.insert(knownExtensions_.end(), extensions.begin(), extensions.end());
    }
}

const xcb_query_extension_reply_t* Connection::extension(xcb_extension_t& extension) const {
    if (std::ranges::find(knownExtensions_, &extension) == knownExtensions_.end()) {
        learn({&extension});
        if (std::ranges::find(knownExtensions_, &extension) == knownExtensions_.end()) {
            return nullptr;
        }
    }
    const auto* const data = xcb_get_extension_data(connection_, &extension);
    return data != nullptr && data->present != 0 ? data : nullptr;
}

bool Connection::hasMonitors() const {
    if (!hasMonitors_ && extension(xcb_randr_id) != nullptr) {
        // The server answers in the version that it was asked for.
        constexpr std::uint32_t major = 1;
        constexpr std::uint32_t minor = 5;
        if (const auto version = take<xcb_randr_query_version_reply_t>(
                xcb_randr_query_version(connection_, major, minor))) {
            hasMonitors_ = version->major_version > major || version->minor_version >= minor;
        }
    }
    return hasMonitors_.value_or(false);
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
