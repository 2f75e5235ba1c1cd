#include "menubar/XEmbed.h"

#include "platform/x11/Properties.h"

#include <algorithm>
#include <array>

namespace pelistra::menubar {

namespace {

constexpr std::uint32_t mappedFlag = 1;
constexpr std::uint32_t embeddedNotify = 0;

} // namespace

XEmbedInfo readXEmbedInfo(std::span<const std::uint32_t> words) {
    if (words.size() < 2) {
        return {};
    }
    return {.version = words[0], .mapped = (words[1] & mappedFlag) != 0};
}

void sendEmbeddedNotify(const x11::Connection& connection, xcb_atom_t xembedAtom,
                        xcb_window_t client, xcb_window_t container, std::uint32_t clientVersion) {
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = x11::bitsOfWord;
    message.window = client;
    message.type = xembedAtom;
    // Timestamp, message, detail, the embedder, the version that both speak.
    const std::uint32_t version = std::min(clientVersion, xembedVersion);
    const std::array<std::uint32_t, 5> words{XCB_CURRENT_TIME, embeddedNotify, 0, container,
                                             version};
    std::ranges::copy(words, message.data.data32);
    xcb_send_event(connection.get(), 0, client, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&message));
}

} // namespace pelistra::menubar
