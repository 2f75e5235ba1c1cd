#pragma once

#import <Foundation/Foundation.h>

namespace pelistra::macos {

// Whether another process runs an application of that bundle identifier; false for nil, which a
// program outside a bundle has.
[[nodiscard]] bool anotherCopyRuns(NSString* bundleIdentifier);

// Says so to the user, in front of what they work in, and returns when that was read.
void sayThatAnotherCopyRuns();

} // namespace pelistra::macos
