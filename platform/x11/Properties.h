#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/Replies.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace pelistra::x11 {

// Properties of windows, foreign ones included: whatever type, format or length a client chose,
// what comes back is a checked value or nothing. Nobody else calls xcb_get_property.

// A request for a property that has been sent and not yet answered. Send all of them, then read.
struct PropertyRequest {
    xcb_get_property_cookie_t cookie;
};

// At most this many bytes of a property are ever read, so that a client cannot make us copy
// megabytes.
inline constexpr std::uint32_t propertyByteLimit = 64 * 1024;

// The formats of properties and client messages that are made of words, and of those made of bytes,
// in bits.
inline constexpr std::uint8_t bitsOfWord = 32;
inline constexpr std::uint8_t bitsOfByte = 8;

// Asks for a property of that type, or of any; of a longer one for its first `byteLimit` bytes (a
// multiple of four). A property of another type counts as there, with no bytes.
[[nodiscard]] PropertyRequest requestProperty(const Connection& connection, xcb_window_t window,
                                              xcb_atom_t property,
                                              xcb_atom_t type = XCB_GET_PROPERTY_TYPE_ANY,
                                              std::uint32_t byteLimit = propertyByteLimit);

// A property as it was on the server, its format and type included.
struct PropertyValue {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::uint8_t format = 0;
    std::vector<std::uint8_t> bytes;

    // The values of a property of format 32; empty for any other format.
    [[nodiscard]] std::vector<std::uint32_t> words() const;
    // The bytes of a property of format 8 up to the first zero byte; empty for any other format.
    [[nodiscard]] std::string text() const;
    // text() in UTF-8: a property of type STRING is in Latin-1; of any other type it stays as it
    // is.
    [[nodiscard]] std::string utf8() const;
    // The zero-separated texts of a property of format 8.
    [[nodiscard]] std::vector<std::string> texts() const;
};

// Waits for the answer. Empty when the window is gone, has no such property, or the server did not
// answer in time.
[[nodiscard]] std::optional<PropertyValue> readProperty(const Connection& connection,
                                                        PropertyRequest request);

// The same as part of a task.
[[nodiscard]] std::optional<PropertyValue> readProperty(Replies& replies, PropertyRequest request);

// Each replaces the property, whatever it was, without waiting: words in format 32, or the bytes of
// a text in format 8.
void setWords(const Connection& connection, xcb_window_t window, xcb_atom_t property,
              xcb_atom_t type, std::span<const std::uint32_t> values);
void setText(const Connection& connection, xcb_window_t window, xcb_atom_t property,
             xcb_atom_t type, std::string_view text);

} // namespace pelistra::x11
