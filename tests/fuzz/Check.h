#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <source_location>
#include <span>
#include <string>
#include <string_view>

// What every fuzz target builds on: its input, and how it says that something does not hold.

namespace pelistra::fuzz {

// Ends the program with a line that names the place when `holds` is false.
inline void check(bool holds, std::source_location where = std::source_location::current()) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s:%u\n", where.file_name(),
                     static_cast<unsigned>(where.line()));
        std::abort();
    }
}

// Takes values off the front of an input. Past its end everything is 0 and empty.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

    [[nodiscard]] bool isEmpty() const { return rest_.empty(); }

    std::span<const std::uint8_t> bytes(std::size_t count) {
        const auto taken = rest_.first(count < rest_.size() ? count : rest_.size());
        rest_ = rest_.subspan(taken.size());
        return taken;
    }
    std::uint8_t byte() {
        const auto taken = bytes(1);
        return taken.empty() ? std::uint8_t{0} : taken.front();
    }
    std::uint32_t word() {
        std::uint32_t value = 0;
        for (const std::uint8_t byte : bytes(sizeof value)) {
            value = (value << 8U) | byte;
        }
        return value;
    }
    std::string text(std::size_t count) {
        const auto taken = bytes(count);
        return {taken.begin(), taken.end()};
    }
    // Up to the next line break, which is taken too.
    std::string line() {
        std::string result;
        while (!rest_.empty()) {
            const auto next = static_cast<char>(byte());
            if (next == '\n') {
                break;
            }
            result += next;
        }
        return result;
    }
    std::string restAsText() { return text(rest_.size()); }

private:
    std::span<const std::uint8_t> rest_;
};

// Tries one input: what each target defines.
void tryInput(Input input);

// How many characters a valid UTF-8 text of one harmless line has: no control characters, nothing
// that separates lines or turns the direction of the text around it. -1 for any other text. Written
// after the table of well-formed sequences, unlike the decoders under test.
[[nodiscard]] long cleanLength(std::string_view text);

// Whether a text is valid UTF-8, whatever characters are in it.
[[nodiscard]] bool isUtf8(std::string_view text);

[[nodiscard]] inline bool isClean(std::string_view text) {
    return cleanLength(text) >= 0;
}

} // namespace pelistra::fuzz
