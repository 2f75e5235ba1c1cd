#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <type_traits>

namespace pelistra::macos {

struct CoreFoundationDeleter {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};

// What a Create or Copy function of CoreFoundation or CoreGraphics gave, released in the end. Empty
// when the function gave nothing. Ref is a reference type such as CGEventRef.
template <class Ref>
using CoreFoundationOwned = std::unique_ptr<std::remove_pointer_t<Ref>, CoreFoundationDeleter>;

} // namespace pelistra::macos
