#include "menubar/ItemNames.h"

#include "menubar/ForeignText.h"
#include "menubar/OrderMemory.h"

#include <vector>

namespace pelistra::menubar {

ItemNames namesOf(const std::optional<x11::PropertyValue>& windowClass,
                  const std::optional<x11::PropertyValue>& title) {
    std::vector<std::string> parts =
        windowClass ? windowClass->texts() : std::vector<std::string>{};
    parts.resize(2);
    ItemNames names{.instance = cleanText(parts[0], identityCharacterLimit),
                    .className = cleanText(parts[1], identityCharacterLimit)};
    if (names.instance.empty() && names.className.empty() && title) {
        names.instance = cleanText(title->text(), identityCharacterLimit);
    }
    return names;
}

} // namespace pelistra::menubar
