#pragma once

#include "menubar/Server.h"

#include <memory>

#include <xcb/xcb_keysyms.h>

namespace pelistra::menubar {

// The pointer and keyboard grabs of dragging: Super with the first button, or Alt and Shift with
// it, anywhere in the bar. The bar gets these presses before the program under the pointer does.
class DragInput {
public:
    DragInput(const Server& server, xcb_window_t bar);

    // Takes the keyboard while an item is being dragged, so that Escape is heard.
    void begin(xcb_timestamp_t time) const;
    // Gives the keyboard back. The pointer is free from the release of the button on; to give it
    // back now would end what the user may have begun since.
    void end() const;
    // Gives the pointer back while its button is down.
    void releasePointer() const;

    [[nodiscard]] bool isEscape(const xcb_key_press_event_t& event) const;
    // The keyboard's layout changed.
    void refresh(xcb_mapping_notify_event_t& event) const;

private:
    struct SymbolsDeleter {
        void operator()(xcb_key_symbols_t* symbols) const { xcb_key_symbols_free(symbols); }
    };

    const Server* server_;
    xcb_window_t bar_;
    std::unique_ptr<xcb_key_symbols_t, SymbolsDeleter> symbols_;
};

} // namespace pelistra::menubar
