#pragma once

#import <Foundation/Foundation.h>

#include <utility>

namespace pelistra::macos {

// One strong reference to an Objective-C object, with manual reference counting and with automatic
// reference counting alike. ObjectPointer is a pointer type such as NSWindow* or id.
template <class ObjectPointer> class Owned {
  public:
    Owned() = default;
    // Takes over the reference that alloc, new, copy or a Create function gave.
    [[nodiscard]] static Owned adopt(ObjectPointer object) {
        Owned result;
        result.object_ = object;
        return result;
    }
    // Adds a reference to an object that belongs to someone else.
    [[nodiscard]] static Owned share(ObjectPointer object) {
        retain(object);
        return adopt(object);
    }

    Owned(const Owned& other) : object_(other.object_) { retain(object_); }
    Owned(Owned&& other) noexcept : object_(std::exchange(other.object_, nil)) {}
    Owned& operator=(Owned other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~Owned() { reset(); }

    void reset() {
        ObjectPointer object = std::exchange(object_, nil);
        release(object);
    }
    [[nodiscard]] ObjectPointer get() const { return object_; }
    [[nodiscard]] explicit operator bool() const { return object_ != nil; }

  private:
#if __has_feature(objc_arc)
    static void retain(ObjectPointer) {}
    static void release(ObjectPointer) {}
#else
    static void retain(ObjectPointer object) { [object retain]; }
    static void release(ObjectPointer object) { [object release]; }
#endif

    ObjectPointer object_ = nil;
};

} // namespace pelistra::macos
