#pragma once

#include "menubar/Server.h"
#include "platform/x11/Properties.h"

#include <optional>
#include <string>

namespace pelistra::menubar {

// What a window says of itself, each as it is on the server: missing, or anything.
struct TextAnswers {
    // WM_CLASS.
    std::optional<x11::PropertyValue> windowClass;
    // WM_NAME.
    std::optional<x11::PropertyValue> name;
    // _NET_WM_NAME.
    std::optional<x11::PropertyValue> netName;
};

struct TextRequests {
    x11::PropertyRequest windowClass;
    x11::PropertyRequest name;
    x11::PropertyRequest netName;
};

[[nodiscard]] TextRequests requestTexts(const Server& server, xcb_window_t window);
[[nodiscard]] TextAnswers readTexts(const Server& server, const TextRequests& requests);
// Whether a change of that property changes what requestTexts() asks for.
[[nodiscard]] bool isText(const Server& server, xcb_atom_t property);

// The texts that the bar passes on about an item: what is in Latin-1 as UTF-8, the rest as it is.
struct ItemTexts {
    // _NET_WM_NAME, else WM_NAME; empty without both.
    std::string title;
    // The two parts of WM_CLASS, if it is of type STRING.
    std::string instance;
    std::string className;
};

[[nodiscard]] ItemTexts textsOf(const TextAnswers& answers);

} // namespace pelistra::menubar
