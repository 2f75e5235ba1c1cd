#include "platform/linux/icons/PresentableText.h"

#include "platform/x11/Utf8.h"

#include <algorithm>

namespace pelistra::linux {

namespace {

// Whether it can be handed on as it is. Plain char has a sign or none.
bool isPlain(std::string_view text, std::size_t byteLimit) {
    return text.size() <= byteLimit &&
           std::ranges::all_of(text, [](char c) { return c >= ' ' && c < '\x7F'; });
}

// Appends a character in presentable form; false when the text is full.
bool append(std::string& text, char32_t character, std::size_t byteLimit) {
    if (x11::isReordering(character)) {
        return true;
    }
    const std::size_t before = text.size();
    x11::appendCharacter(text, x11::isControl(character) ? U' ' : character);
    if (text.size() > byteLimit) {
        text.resize(before);
        return false;
    }
    return true;
}

} // namespace

std::string presentableText(std::string_view utf8, std::size_t byteLimit) {
    if (isPlain(utf8, byteLimit)) {
        return std::string(utf8);
    }
    std::string result;
    while (!utf8.empty()) {
        const x11::Decoded next = x11::firstCharacter(utf8);
        if (!append(result, next.character, byteLimit)) {
            break;
        }
        utf8.remove_prefix(next.length);
    }
    return result;
}

std::string presentableLatin1(std::string_view latin1) {
    return presentableText(x11::fromLatin1(latin1));
}

} // namespace pelistra::linux
