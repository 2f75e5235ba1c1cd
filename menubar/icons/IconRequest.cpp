#include "menubar/icons/IconRequest.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace pelistra::menubar {

namespace {

constexpr auto texts = std::array{
    &IconRequest::theme,   &IconRequest::foreground, &IconRequest::error, &IconRequest::warning,
    &IconRequest::success, &IconRequest::themePath,  &IconRequest::name};

} // namespace

std::string IconRequest::text() const {
    std::string result = std::to_string(side);
    for (const auto member : texts) {
        result.append(1, '\0').append(this->*member);
    }
    return result;
}

std::optional<IconRequest> IconRequest::parse(std::string_view text) {
    std::vector<std::string_view> parts;
    for (bool more = true; more;) {
        const std::size_t end = text.find('\0');
        more = end != std::string_view::npos;
        parts.push_back(text.substr(0, end));
        text.remove_prefix(more ? end + 1 : text.size());
    }
    IconRequest request;
    if (parts.size() != texts.size() + 1) {
        return std::nullopt;
    }
    const std::string_view side = parts.front();
    const auto number = std::from_chars(side.data(), side.data() + side.size(), request.side);
    if (number.ec != std::errc() || number.ptr != side.data() + side.size() || request.side < 1 ||
        request.side > longestIconSide) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < texts.size(); ++i) {
        request.*texts.at(i) = parts[i + 1];
    }
    return request;
}

} // namespace pelistra::menubar
