#pragma once

#import <Foundation/Foundation.h>

namespace pelistra::testing::standins {

// Values that a stand-in keeps for a view, window or picture of GNUstep, whose classes have no room
// for them. Gone when the object is.
[[nodiscard]] NSMutableDictionary* attachmentsOf(id object);

// Once, before the first use.
void installAttachments();

} // namespace pelistra::testing::standins
