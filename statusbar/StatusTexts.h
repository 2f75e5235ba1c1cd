#pragma once

#include <string_view>

namespace pelistra::status_texts {

// What hovering over the arrow says, except while a single item is revealed.
inline constexpr std::string_view controlToolTip =
    "左键：折叠或打开第二行；按住 Option 点击：展开整理；右键：设置";

} // namespace pelistra::status_texts
