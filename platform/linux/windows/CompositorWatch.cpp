#include "platform/linux/windows/CompositorWatch.h"

#include "platform/x11/Atoms.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include <xcb/xfixes.h>

namespace pelistra::linux {

namespace {

xcb_atom_t compositorSelectionOf(const x11::Connection& connection) {
    const std::string name = "_NET_WM_CM_S" + std::to_string(connection.screenNumber());
    return x11::internAtoms(connection, std::array<std::string_view, 1>{name}).front();
}

} // namespace

CompositorWatch::CompositorWatch(const x11::Connection& connection,
                                 const ObserveEvents& observeEvents)
    : connection_(connection), selection_(compositorSelectionOf(connection)) {
    const auto* const xfixes = connection.extension(xcb_xfixes_id);
    if (xfixes == nullptr) {
        return;
    }
    // The server wants to be asked before it takes anything else.
    static_cast<void>(connection.take<xcb_xfixes_query_version_reply_t>(xcb_xfixes_query_version(
        connection.get(), XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION)));
    xcb_xfixes_select_selection_input(connection.get(), connection.root(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    connection.flush();
    const int type = xfixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    events_ = observeEvents([this, type](const xcb_generic_event_t& event) {
        if (x11::typeOf(event) == type &&
            x11::eventAs<xcb_xfixes_selection_notify_event_t>(event).selection == selection_) {
            observers_.call();
        }
    });
}

bool CompositorWatch::isComposited() const {
    const auto owner = connection_.take<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(connection_.get(), selection_));
    if (owner) {
        isComposited_ =
            owner->owner != XCB_WINDOW_NONE && connection_.alphaVisual().type != nullptr;
    }
    return isComposited_;
}

SubscriptionPtr CompositorWatch::observe(std::function<void()> handler) {
    return observers_.add(std::move(handler));
}

} // namespace pelistra::linux
