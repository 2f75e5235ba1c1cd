#include "platform/x11/Properties.h"

#include "platform/x11/Utf8.h"

#include <algorithm>
#include <cstring>

namespace pelistra::x11 {

PropertyRequest requestProperty(const Connection& connection, xcb_window_t window,
                                xcb_atom_t property, xcb_atom_t type, std::uint32_t byteLimit) {
    return {xcb_get_property(connection.get(), 0, window, property, type, 0,
                             byteLimit / std::uint32_t{sizeof(std::uint32_t)})};
}

namespace {

std::optional<PropertyValue> propertyValue(const xcb_get_property_reply_t* reply) {
    if (reply == nullptr || reply->type == XCB_ATOM_NONE) {
        return std::nullopt;
    }
    const auto* data = static_cast<const std::uint8_t*>(xcb_get_property_value(reply));
    const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply));
    return PropertyValue{
        .type = reply->type, .format = reply->format, .bytes = {data, data + length}};
}

} // namespace

std::optional<PropertyValue> readProperty(const Connection& connection, PropertyRequest request) {
    return propertyValue(connection.take<xcb_get_property_reply_t>(request.cookie).get());
}

std::optional<PropertyValue> readProperty(Replies& replies, PropertyRequest request) {
    return propertyValue(replies.take<xcb_get_property_reply_t>(request.cookie).get());
}

std::vector<std::uint32_t> PropertyValue::words() const {
    if (format != bitsOfWord) {
        return {};
    }
    std::vector<std::uint32_t> result(bytes.size() / sizeof(std::uint32_t));
    if (!result.empty()) {
        std::memcpy(result.data(), bytes.data(), result.size() * sizeof(std::uint32_t));
    }
    return result;
}

std::string PropertyValue::text() const {
    if (format != bitsOfByte) {
        return {};
    }
    return {bytes.begin(), std::ranges::find(bytes, 0)};
}

std::string PropertyValue::utf8() const {
    return type == XCB_ATOM_STRING ? fromLatin1(text()) : text();
}

std::vector<std::string> PropertyValue::texts() const {
    std::vector<std::string> result;
    if (format != bitsOfByte) {
        return result;
    }
    auto begin = bytes.begin();
    while (begin != bytes.end()) {
        const auto end = std::find(begin, bytes.end(), 0);
        result.emplace_back(begin, end);
        begin = end == bytes.end() ? end : end + 1;
    }
    return result;
}

void setWords(const Connection& connection, xcb_window_t window, xcb_atom_t property,
              xcb_atom_t type, std::span<const std::uint32_t> values) {
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, type, bitsOfWord,
                        static_cast<std::uint32_t>(values.size()), values.data());
}

void setText(const Connection& connection, xcb_window_t window, xcb_atom_t property,
             xcb_atom_t type, std::string_view text) {
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, type, bitsOfByte,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

} // namespace pelistra::x11
