#include "menubar/Server.h"

#include "platform/posix/Translation.h"
#include "platform/x11/Clients.h"

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/randr.h>
#include <xcb/xfixes.h>

namespace pelistra::menubar {

namespace {

struct Version {
    std::uint32_t major;
    std::uint32_t minor;
};

// Composite names window pixmaps from version 0.2 on.
constexpr Version compositeVersion{.major = 0, .minor = 2};
constexpr Version damageVersion{.major = 1, .minor = 1};
constexpr Version fixesVersion{.major = 4, .minor = 0};

bool isAtLeast(std::uint32_t major, std::uint32_t minor, Version wanted) {
    return major > wanted.major || (major == wanted.major && minor >= wanted.minor);
}

} // namespace

std::optional<Server> Server::prepare(x11::Connection& connection, std::string& failure) {
    Server server(connection);
    failure = server.prepareExtensions();
    if (!failure.empty()) {
        return std::nullopt;
    }
    return server;
}

std::string Server::prepareExtensions() {
    xcb_connection_t* x = xcb();
    connection_->learn(
        {&xcb_composite_id, &xcb_damage_id, &xcb_render_id, &xcb_xfixes_id, &xcb_randr_id});
    for (auto [extension, name] :
         {std::pair{&xcb_composite_id, "Composite"}, std::pair{&xcb_damage_id, "DAMAGE"},
          std::pair{&xcb_render_id, "RENDER"}, std::pair{&xcb_xfixes_id, "XFIXES"}}) {
        if (connection_->extension(*extension) == nullptr) {
            return posix::translated("the X server lacks the extension %1", {name});
        }
    }
    const auto composite =
        xcb_composite_query_version(x, compositeVersion.major, compositeVersion.minor);
    const auto damage = xcb_damage_query_version(x, damageVersion.major, damageVersion.minor);
    const auto fixes = xcb_xfixes_query_version(x, fixesVersion.major, fixesVersion.minor);
    const auto compositeReply = connection_->take<xcb_composite_query_version_reply_t>(composite);
    const auto damageReply = connection_->take<xcb_damage_query_version_reply_t>(damage);
    const auto fixesReply = connection_->take<xcb_xfixes_query_version_reply_t>(fixes);
    if (!compositeReply || !damageReply || !fixesReply ||
        !isAtLeast(compositeReply->major_version, compositeReply->minor_version,
                   compositeVersion)) {
        return posix::translated("the X server's Composite extension is too old");
    }
    if (const auto* data = connection_->extension(xcb_damage_id)) {
        damageEvent_ = data->first_event + XCB_DAMAGE_NOTIFY;
    }
    // The server answers in the version that the client says it speaks.
    const auto render =
        xcb_render_query_version(x, XCB_RENDER_MAJOR_VERSION, XCB_RENDER_MINOR_VERSION);
    xcb_discard_reply(x, render.sequence);
    formats_ =
        connection_->take<xcb_render_query_pict_formats_reply_t>(xcb_render_query_pict_formats(x));
    const xcb_render_pictforminfo_t* alpha =
        formats_ == nullptr
            ? nullptr
            : xcb_render_util_find_standard_format(formats_.get(), XCB_PICT_STANDARD_ARGB_32);
    if (alpha == nullptr) {
        return posix::translated("the X server's RENDER extension offers no pictures with alpha");
    }
    alphaFormat_ = alpha->id;
    return {};
}

bool Server::isOfOneClient(xcb_window_t first, xcb_window_t second) const {
    return x11::clientOf(connection(), first) == x11::clientOf(connection(), second);
}

xcb_render_pictformat_t Server::formatOf(xcb_visualid_t visual) const {
    const xcb_render_pictvisual_t* found =
        xcb_render_util_find_visual_format(formats_.get(), visual);
    return found != nullptr ? found->format : 0;
}

} // namespace pelistra::menubar
