#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace pelistra::menubar {

// How the bar asks the program that reads icons for it: one packet for the question, one for the
// answer. The answer is width and height as 32-bit numbers and the pixels of an ArgbImage, all in
// the machine's byte order; both are 0 when there is no such picture.

// What the program gets its socket as.
inline constexpr int iconSocket = 0;
// The longest question.
inline constexpr std::size_t iconRequestLimit = std::size_t{16} * 1024;
// The longest side that is asked for; an answer with that side fits into one packet.
inline constexpr int longestIconSide = 192;
inline constexpr std::size_t iconAnswerLimit =
    8 + std::size_t{4} * longestIconSide * longestIconSide;

struct IconRequest {
    // Of the square that the picture is to fit into, in device pixels.
    int side = 0;
    // The user's icon theme; may be empty.
    std::string theme;
    // "#rrggbb": what symbolic icons are drawn with, and what they use for their meanings.
    std::string foreground;
    std::string error;
    std::string warning;
    std::string success;
    // A folder that is searched first; may be empty.
    std::string themePath;
    // The name of an icon, or the path of a file.
    std::string name;

    bool operator==(const IconRequest&) const = default;
    [[nodiscard]] std::string text() const;
    // What text() wrote; empty when it is anything else.
    [[nodiscard]] static std::optional<IconRequest> parse(std::string_view text);
};

} // namespace pelistra::menubar
