#include "tests/desktop/harness/Compositor.h"

#include "tests/desktop/harness/XClient.h"

#include <ostream>

#include <xcb/composite.h>

namespace pelistra::testing {

std::string nameOf(Compositor compositor) {
    switch (compositor) {
    case Compositor::Picom:
        return "Picom";
    case Compositor::Xcompmgr:
        return "Xcompmgr";
    case Compositor::Xfwm4:
        return "Xfwm4";
    case Compositor::None:
        break;
    }
    return "NoCompositor";
}

void PrintTo(Compositor compositor, std::ostream* stream) {
    *stream << nameOf(compositor);
}

std::vector<std::string> commandOf(Compositor compositor) {
    switch (compositor) {
    case Compositor::Picom:
        return {"picom", "--config", "/dev/null", "--backend", "xrender", "--shadow"};
    case Compositor::Xcompmgr:
        return {"xcompmgr"};
    case Compositor::Xfwm4:
        return {"xfwm4", "--compositor=on", "--vblank=off", "--sm-client-disable"};
    case Compositor::None:
        break;
    }
    return {};
}

bool isComposited(XClient& client) {
    if (client.selectionOwner("_NET_WM_CM_S0") == XCB_WINDOW_NONE) {
        return false;
    }
    const x11::Owned<xcb_composite_query_version_reply_t> version(xcb_composite_query_version_reply(
        client.get(), xcb_composite_query_version(client.get(), 0, 4), nullptr));
    const xcb_window_t probe = client.connection().newId();
    const std::uint32_t unmanaged = 1;
    xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, probe, client.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &unmanaged);
    xcb_map_window(client.get(), probe);
    const xcb_pixmap_t pixmap = client.connection().newId();
    const x11::Owned<xcb_generic_error_t> error(xcb_request_check(
        client.get(), xcb_composite_name_window_pixmap_checked(client.get(), probe, pixmap)));
    if (!error) {
        xcb_free_pixmap(client.get(), pixmap);
    }
    xcb_destroy_window(client.get(), probe);
    client.sync();
    return !error;
}

} // namespace pelistra::testing
