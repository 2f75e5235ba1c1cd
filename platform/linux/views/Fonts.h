#pragma once

#include "platform/linux/views/Look.h"
#include "ui/Font.h"

#include <QFont>

namespace pelistra::linux {

// The desktop's font, or a modern sans serif one, at the font's size, with Chinese fonts behind it
// for what it lacks. Sizes are in Qt units, which are points.
[[nodiscard]] QFont qtFont(const ui::Font& font, const Look& look);

} // namespace pelistra::linux
