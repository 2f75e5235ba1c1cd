#pragma once

#include "platform/x11/Connection.h"

#include <cstdint>
#include <optional>
#include <span>

namespace pelistra::menubar {

// The XEmbed protocol, as far as the embedder of a tray icon speaks it.

// The version of the protocol that the bar speaks.
inline constexpr std::uint32_t xembedVersion = 0;

struct XEmbedInfo {
    std::uint32_t version = xembedVersion;
    bool mapped = true;
};

// Reads the words of _XEMBED_INFO; a missing or malformed property counts as "mapped".
[[nodiscard]] XEmbedInfo readXEmbedInfo(std::span<const std::uint32_t> words);

// Tells `client` that it now lives in `container`.
void sendEmbeddedNotify(const x11::Connection& connection, xcb_atom_t xembedAtom,
                        xcb_window_t client, xcb_window_t container, std::uint32_t clientVersion);

} // namespace pelistra::menubar
