#pragma once

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace pelistra::x11 {

struct FreeDeleter {
    // XCB hands replies, errors and events out as malloc'd memory.
    void operator()(void* memory) const {
        std::free(memory); // NOLINT(*-no-malloc,*-owning-memory)
    }
};

// A reply, an error or an event of the X server, owned.
template <class T>
using Owned = std::unique_ptr<T, FreeDeleter>;

using EventPtr = Owned<xcb_generic_event_t>;
using ErrorPtr = Owned<xcb_generic_error_t>;

// The type of an event without the bit that says that a client sent it.
[[nodiscard]] inline int typeOf(const xcb_generic_event_t& event) {
    return event.response_type & 0x7f;
}

// Reads a generic event as the event that its type says it is.
template <class T>
[[nodiscard]] const T& eventAs(const xcb_generic_event_t& event) {
    return reinterpret_cast<const T&>(event);
}

} // namespace pelistra::x11
