#include "menubar/ForeignText.h"

#include "platform/x11/Utf8.h"

namespace pelistra::menubar {

namespace {

bool isUnwanted(char32_t character) {
    return x11::isControl(character) || x11::isReordering(character);
}

} // namespace

std::string cleanText(std::string_view foreign, std::size_t characterLimit) {
    std::string result;
    std::size_t characters = 0;
    while (!foreign.empty() && characters < characterLimit) {
        const x11::Decoded next = x11::firstCharacter(foreign);
        foreign.remove_prefix(next.length);
        if (!isUnwanted(next.character)) {
            x11::appendCharacter(result, next.character);
            ++characters;
        }
    }
    return result;
}

std::string cleanLatinText(std::string_view foreign, std::size_t characterLimit) {
    return cleanText(x11::fromLatin1(foreign.substr(0, characterLimit)), characterLimit);
}

} // namespace pelistra::menubar
