#pragma once

#include "ui/Layout.h"

// The sizes of the controls that the project draws itself, in points.
namespace pelistra::linux::metrics {

inline constexpr double controlRadius = 7;
inline constexpr double largeControlRadius = 9;
inline constexpr double leastProminentWidth = 96;

// Of the hairline around buttons and cards.
inline constexpr double borderOpacity = 0.12;

inline constexpr double focusRingWidth = 3;
inline constexpr double focusRingOpacity = 0.55;

inline constexpr double switchWidth = 36;
inline constexpr double switchHeight = 21;
inline constexpr double switchDistance = 14;

inline constexpr ui::Edges formMargins = {.top = 18, .leading = 24, .bottom = 24, .trailing = 24};
inline constexpr double formSectionDistance = 20;
inline constexpr double formTitleDistance = 6;
inline constexpr double formCardRadius = 12;
inline constexpr double formWidest = 760;
inline constexpr ui::Edges formRowInsets = {.top = 9, .leading = 16, .bottom = 9, .trailing = 16};
// Between a row's edge and the field that shows hover and press in it.
inline constexpr double formRowFieldInset = 4;
inline constexpr double formRowFieldRadius = 8;

} // namespace pelistra::linux::metrics
