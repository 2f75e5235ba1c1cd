#pragma once

#include "platform/Image.h"
#include "platform/linux/images/Pixels.h"
#include "ui/Color.h"

#include <string>
#include <utility>

namespace pelistra::linux {

// A picture that this process draws itself.
class LinuxImage : public Image {
public:
    // The picture in device pixels at the given scale, its edges on whole pixels. `label` is the
    // colour of texts and symbols in the surroundings; a template picture is wholly in it. Empty
    // when it cannot be drawn.
    [[nodiscard]] virtual Pixels rendered(double scale, const ui::Rgb& label) const = 0;
};

// The icon of an application, by its name in the icon theme or by the path of its file. Whoever
// shows it looks it up then: finding and decoding icons is work for what has windows.
class ThemeIcon final : public Image {
public:
    // The size that icons of applications are made for first of all.
    static constexpr double edge = 32;

    explicit ThemeIcon(std::string iconName) : name(std::move(iconName)) {}

    [[nodiscard]] Size size() const override { return {.width = edge, .height = edge}; }

    const std::string name;
    // Said by whoever has looked it up in vain.
    mutable bool isMissing = false;
};

} // namespace pelistra::linux
