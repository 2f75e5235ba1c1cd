#pragma once

#include "menubar/Atoms.h"
#include "platform/x11/Connection.h"

#include <optional>
#include <string>

#include <xcb/render.h>
#include <xcb/xcb_renderutil.h>

namespace pelistra::menubar {

// The X server as the bar needs it: the connection, the atoms, and the extensions, all of which are
// known to be there.
class Server {
public:
    // Empty, with a sentence for the user in `failure`, when the server lacks an extension that the
    // bar cannot do without.
    [[nodiscard]] static std::optional<Server> prepare(x11::Connection& connection,
                                                       std::string& failure);

    [[nodiscard]] const x11::Connection& connection() const { return *connection_; }
    [[nodiscard]] xcb_connection_t* xcb() const { return connection_->get(); }
    [[nodiscard]] xcb_window_t root() const { return connection_->root(); }
    [[nodiscard]] xcb_atom_t atom(Atom which) const { return atoms_[which]; }

    // Whether one client, whoever it is, made both windows.
    [[nodiscard]] bool isOfOneClient(xcb_window_t first, xcb_window_t second) const;

    // The code of DamageNotify events.
    [[nodiscard]] int damageEvent() const { return damageEvent_; }
    // The picture format of a visual; 0 when pictures of that visual cannot be made.
    [[nodiscard]] xcb_render_pictformat_t formatOf(xcb_visualid_t visual) const;
    // The format of 32 bits with alpha that every server has.
    [[nodiscard]] xcb_render_pictformat_t alphaFormat() const { return alphaFormat_; }

private:
    Server(x11::Connection& connection) : connection_(&connection), atoms_(connection) {}

    [[nodiscard]] std::string prepareExtensions();

    x11::Connection* connection_;
    Atoms atoms_;
    int damageEvent_ = 0;
    x11::Owned<xcb_render_query_pict_formats_reply_t> formats_;
    xcb_render_pictformat_t alphaFormat_ = 0;
};

} // namespace pelistra::menubar
