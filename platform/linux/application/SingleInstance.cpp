#include "platform/linux/application/SingleInstance.h"

#include "platform/x11/Atoms.h"
#include "platform/x11/Properties.h"

#include <string>
#include <utility>

#include <poll.h>

namespace pelistra::linux {

SingleInstance::SingleInstance(x11::Connection& connection)
    : connection_(connection), window_(connection.newId()) {
    const std::string selection =
        "_PELISTRA_ORGANISER_S" + std::to_string(connection_.screenNumber());
    const std::array<std::string_view, NameCount> names{
        selection,   "_PELISTRA_SHOW_SETTINGS", "_PELISTRA_SHOW_ONBOARDING", "TARGETS",
        "TIMESTAMP", "_PELISTRA_ANSWER"};
    atoms_ = x11::internAtoms(connection_, names);
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_.get(), 0, window_, connection_.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &mask);
}

SingleInstance::~SingleInstance() {
    xcb_destroy_window(connection_.get(), window_);
    connection_.flush();
}

SingleInstance::Claim SingleInstance::claim() {
    const auto time = serverTime();
    if (!time) {
        return Claim::Failed;
    }
    // Two starts at the same moment must not both find the place free.
    xcb_grab_server(connection_.get());
    const bool isFree = owner() == XCB_WINDOW_NONE;
    if (isFree) {
        xcb_set_selection_owner(connection_.get(), window_, atoms_[Selection], *time);
    }
    xcb_ungrab_server(connection_.get());
    if (!isFree) {
        connection_.flush();
        return Claim::Taken;
    }
    claimedAt_ = *time;
    return owner() == window_ ? Claim::Claimed : Claim::Failed;
}

bool SingleInstance::handOver(Request request, std::chrono::milliseconds bound) {
    const xcb_atom_t target =
        atoms_[request == Request::ShowSettings ? ShowSettings : ShowOnboarding];
    xcb_convert_selection(connection_.get(), window_, atoms_[Selection], target, atoms_[Answer],
                          XCB_CURRENT_TIME);
    const auto answer = waitFor(
        [this, target](const xcb_generic_event_t& event) {
            return x11::typeOf(event) == XCB_SELECTION_NOTIFY &&
                   x11::eventAs<xcb_selection_notify_event_t>(event).requestor == window_ &&
                   x11::eventAs<xcb_selection_notify_event_t>(event).target == target;
        },
        bound);
    return answer && x11::eventAs<xcb_selection_notify_event_t>(*answer).property != XCB_ATOM_NONE;
}

void SingleInstance::setRequestHandler(std::function<void(Request)> handler) {
    handler_ = std::move(handler);
}

void SingleInstance::handle(const xcb_generic_event_t& event) {
    if (x11::typeOf(event) != XCB_SELECTION_REQUEST) {
        return;
    }
    const auto& request = x11::eventAs<xcb_selection_request_event_t>(event);
    if (request.owner != window_ || request.selection != atoms_[Selection]) {
        return;
    }
    xcb_selection_notify_event_t notify{};
    notify.response_type = XCB_SELECTION_NOTIFY;
    notify.time = request.time;
    notify.requestor = request.requestor;
    notify.selection = request.selection;
    notify.target = request.target;
    notify.property = answer(request) ? request.property : xcb_atom_t{XCB_ATOM_NONE};
    xcb_send_event(connection_.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&notify));
    connection_.flush();
    // The answer goes first: what is shown may take its time.
    if (notify.property != XCB_ATOM_NONE && handler_) {
        if (request.target == atoms_[ShowSettings]) {
            handler_(Request::ShowSettings);
        } else if (request.target == atoms_[ShowOnboarding]) {
            handler_(Request::ShowOnboarding);
        }
    }
}

bool SingleInstance::answer(const xcb_selection_request_event_t& request) {
    if (request.property == XCB_ATOM_NONE) {
        return false;
    }
    if (request.target == atoms_[Targets]) {
        x11::setWords(connection_, request.requestor, request.property, XCB_ATOM_ATOM,
                      std::array{atoms_[Targets], atoms_[Timestamp], atoms_[ShowSettings],
                                 atoms_[ShowOnboarding]});
        return true;
    }
    if (request.target == atoms_[Timestamp]) {
        x11::setWords(connection_, request.requestor, request.property, XCB_ATOM_INTEGER,
                      std::array{claimedAt_});
        return true;
    }
    if (request.target == atoms_[ShowSettings] || request.target == atoms_[ShowOnboarding]) {
        x11::setWords(connection_, request.requestor, request.property, request.target, {});
        return true;
    }
    return false;
}

x11::EventPtr SingleInstance::waitFor(const std::function<bool(const xcb_generic_event_t&)>& isIt,
                                      std::chrono::milliseconds bound) {
    using Clock = std::chrono::steady_clock;
    const auto deadline = Clock::now() + bound;
    connection_.flush();
    while (connection_.isAlive()) {
        while (auto event = connection_.pollEvent()) {
            if (isIt(*event)) {
                return event;
            }
        }
        const auto remaining =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (remaining.count() <= 0) {
            return nullptr;
        }
        pollfd descriptor{.fd = connection_.fileDescriptor(), .events = POLLIN, .revents = 0};
        ::poll(&descriptor, 1, static_cast<int>(remaining.count()));
    }
    return nullptr;
}

// The time of a change of our own window is the server's.
std::optional<xcb_timestamp_t> SingleInstance::serverTime() {
    x11::setWords(connection_, window_, atoms_[Timestamp], XCB_ATOM_INTEGER, {});
    const auto event = waitFor(
        [this](const xcb_generic_event_t& candidate) {
            return x11::typeOf(candidate) == XCB_PROPERTY_NOTIFY &&
                   x11::eventAs<xcb_property_notify_event_t>(candidate).window == window_;
        },
        x11::Connection::startPatience);
    return event ? std::optional(x11::eventAs<xcb_property_notify_event_t>(*event).time)
                 : std::nullopt;
}

xcb_window_t SingleInstance::owner() const {
    const auto reply = connection_.take<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection_.get(), atoms_[Selection]));
    return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

} // namespace pelistra::linux
