#include "menubar/Server.h"

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
constexpr Version randrVersion{.major = 1, .minor = 5};

bool isPresent(xcb_connection_t* connection, xcb_extension_t& extension) {
    const xcb_query_extension_reply_t* data = xcb_get_extension_data(connection, &extension);
    return data != nullptr && data->present != 0;
}

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
    for (xcb_extension_t* extension :
         {&xcb_composite_id, &xcb_damage_id, &xcb_render_id, &xcb_xfixes_id, &xcb_randr_id}) {
        xcb_prefetch_extension_data(x, extension);
    }
    for (auto [extension, name] :
         {std::pair{&xcb_composite_id, "Composite"}, std::pair{&xcb_damage_id, "DAMAGE"},
          std::pair{&xcb_render_id, "RENDER"}, std::pair{&xcb_xfixes_id, "XFIXES"}}) {
        if (!isPresent(x, *extension)) {
            return std::string("the X server lacks the extension ") + name;
        }
    }
    const bool hasRandr = isPresent(x, xcb_randr_id);
    const auto composite =
        xcb_composite_query_version(x, compositeVersion.major, compositeVersion.minor);
    const auto damage = xcb_damage_query_version(x, damageVersion.major, damageVersion.minor);
    const auto fixes = xcb_xfixes_query_version(x, fixesVersion.major, fixesVersion.minor);
    const x11::Owned<xcb_composite_query_version_reply_t> compositeReply(
        xcb_composite_query_version_reply(x, composite, nullptr));
    const x11::Owned<xcb_damage_query_version_reply_t> damageReply(
        xcb_damage_query_version_reply(x, damage, nullptr));
    const x11::Owned<xcb_xfixes_query_version_reply_t> fixesReply(
        xcb_xfixes_query_version_reply(x, fixes, nullptr));
    if (!compositeReply || !damageReply || !fixesReply ||
        !isAtLeast(compositeReply->major_version, compositeReply->minor_version,
                   compositeVersion)) {
        return "the X server's Composite extension is too old";
    }
    damageEvent_ = xcb_get_extension_data(x, &xcb_damage_id)->first_event + XCB_DAMAGE_NOTIFY;
    if (hasRandr) {
        const x11::Owned<xcb_randr_query_version_reply_t> randr(xcb_randr_query_version_reply(
            x, xcb_randr_query_version(x, randrVersion.major, randrVersion.minor), nullptr));
        randrEvent_ = xcb_get_extension_data(x, &xcb_randr_id)->first_event;
        hasMonitors_ = randr && isAtLeast(randr->major_version, randr->minor_version, randrVersion);
    }
    formats_ = xcb_render_util_query_formats(x);
    const xcb_render_pictforminfo_t* alpha =
        formats_ == nullptr
            ? nullptr
            : xcb_render_util_find_standard_format(formats_, XCB_PICT_STANDARD_ARGB_32);
    if (alpha == nullptr) {
        return "the X server's RENDER extension offers no pictures with alpha";
    }
    alphaFormat_ = alpha->id;
    return {};
}

bool Server::isOfOneClient(xcb_window_t first, xcb_window_t second) const {
    // The server numbers clients in the bits that it leaves to none of them.
    const std::uint32_t ownBits = xcb_get_setup(xcb())->resource_id_mask;
    return (first & ~ownBits) == (second & ~ownBits);
}

xcb_render_pictformat_t Server::formatOf(xcb_visualid_t visual) const {
    const xcb_render_pictvisual_t* found = xcb_render_util_find_visual_format(formats_, visual);
    return found != nullptr ? found->format : 0;
}

} // namespace pelistra::menubar
