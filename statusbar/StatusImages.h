#pragma once

#include "platform/Image.h"

namespace pelistra {

// The pictures of the two items. All are template pictures.

// A rounded bar, 2 points wide and 16 tall, centred in 12 x 18 points. Never null.
ImagePtr dividerImage(Images& images);

// The arrow while the section is expanded; null when the system has no such symbol.
ImagePtr expandedArrowImage(Images& images);

// The arrow while the section is collapsed: up while the second row is open, down while it is not;
// null when the system has no such symbol.
ImagePtr overflowArrowImage(Images& images, bool panelVisible);

} // namespace pelistra
