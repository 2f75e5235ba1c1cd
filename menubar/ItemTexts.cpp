#include "menubar/ItemTexts.h"

#include "platform/x11/Utf8.h"

#include <vector>

namespace pelistra::menubar {

namespace {

// A few words fit; whatever is longer is there by accident or to harm.
constexpr std::uint32_t textByteLimit = 1024;

} // namespace

TextRequests requestTexts(const Server& server, xcb_window_t window) {
    const auto request = [&](xcb_atom_t property) {
        return requestProperty(server.connection(), window, property, XCB_GET_PROPERTY_TYPE_ANY,
                               textByteLimit);
    };
    return {.windowClass = request(XCB_ATOM_WM_CLASS),
            .name = request(XCB_ATOM_WM_NAME),
            .netName = request(server.atom(Atom::NetWmName))};
}

TextAnswers readTexts(const Server& server, const TextRequests& requests) {
    return {.windowClass = readProperty(server.connection(), requests.windowClass),
            .name = readProperty(server.connection(), requests.name),
            .netName = readProperty(server.connection(), requests.netName)};
}

bool isText(const Server& server, xcb_atom_t property) {
    return property == XCB_ATOM_WM_CLASS || property == XCB_ATOM_WM_NAME ||
           property == server.atom(Atom::NetWmName);
}

ItemTexts textsOf(const TextAnswers& answers) {
    ItemTexts texts;
    if (answers.netName) {
        texts.title = answers.netName->utf8();
    }
    if (texts.title.empty() && answers.name) {
        texts.title = answers.name->utf8();
    }
    if (answers.windowClass && answers.windowClass->type == XCB_ATOM_STRING) {
        std::vector<std::string> parts = answers.windowClass->texts();
        parts.resize(2);
        texts.instance = x11::fromLatin1(parts[0]);
        texts.className = x11::fromLatin1(parts[1]);
    }
    return texts;
}

} // namespace pelistra::menubar
