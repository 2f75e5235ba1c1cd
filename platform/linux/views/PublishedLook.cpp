#include "platform/linux/views/PublishedLook.h"

#include "platform/linux/icons/PresentableText.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace pelistra::linux {

namespace {

// "Family Name 10": the family, and the size if there is one.
void applyFont(const std::string& font, Look& look) {
    constexpr double usualSize = 10;
    constexpr double smallest = 11;
    constexpr double largest = 22;
    const auto space = font.rfind(' ');
    double size = 0;
    if (space != std::string::npos) {
        const char* const end = font.data() + font.size();
        const auto read = std::from_chars(font.data() + space + 1, end, size);
        if (read.ec != std::errc() || read.ptr != end) {
            size = 0;
        }
    }
    look.fontFamily = presentableText(size > 0 ? font.substr(0, space) : font);
    if (!look.fontFamily.empty() && look.fontFamily.back() == ',') {
        look.fontFamily.pop_back();
    }
    if (size > 0) {
        look.bodySize = std::clamp(Look().bodySize * size / usualSize, smallest, largest);
    }
}

} // namespace

Look lookOf(const x11::XSettings& settings) {
    Look look;
    if (const auto* theme = x11::settingNamed<std::string>(settings, "Net/ThemeName")) {
        look.isDark = x11::isDarkThemeName(*theme);
    }
    if (const auto* animations =
            x11::settingNamed<std::int32_t>(settings, "Gtk/EnableAnimations")) {
        look.reduceMotion = *animations == 0;
    }
    if (const auto* font = x11::settingNamed<std::string>(settings, "Gtk/FontName")) {
        applyFont(*font, look);
    }
    return look;
}

} // namespace pelistra::linux
