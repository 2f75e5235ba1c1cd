#pragma once

#import <Foundation/Foundation.h>

#include <cstddef>

namespace pelistra::testing::standins {

// Values that a stand-in keeps for a view, window or picture of GNUstep, whose classes have no room
// for them. Gone when the object is.
[[nodiscard]] NSMutableDictionary* attachmentsOf(id object);

// Once, before the first use.
void installAttachments();

// The views that live and have a layer, as every view of an element has.
[[nodiscard]] std::size_t liveViews();

} // namespace pelistra::testing::standins
