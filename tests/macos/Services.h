#pragma once

#import <Foundation/Foundation.h>

#include <sys/types.h>
#include <vector>

// The services of macOS that no test may touch. On macOS and on GNUstep alike the tests bring
// functions of their own under the names of these, which the front end is linked with.
namespace pelistra::testing::standins {

// What CGWindowListCopyWindowInfo answers from now on.
void setWindowList(NSArray* windows);
// The receivers of CGEventPostToPid, in order, since the test began.
[[nodiscard]] std::vector<pid_t> postedTo();

} // namespace pelistra::testing::standins
