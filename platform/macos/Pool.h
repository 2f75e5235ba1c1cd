#pragma once

#import <Foundation/Foundation.h>

#include <functional>

namespace pelistra::macos {

// Runs what the run loop calls without an event, after which alone it would empty its autorelease
// pool.
inline void runInPool(const std::function<void()>& work) {
    @autoreleasepool {
        work();
    }
}

} // namespace pelistra::macos
