#include "CoreObject.h"
#include "Counters.h"
#include "World.h"

namespace {

std::size_t live = 0;

}

@implementation StandinCoreObject

- (id)init {
    ++live;
    return [super init];
}

- (void)dealloc {
    --live;
    [super dealloc];
}

@end

@interface StandinArray : StandinCoreObject {
  @public
    std::vector<const void*> values;
}
@end

@implementation StandinArray
@end

const CFAllocatorRef kCFAllocatorDefault = nullptr;

void CFRelease(CFTypeRef cf) { [static_cast<id>(const_cast<void*>(cf)) release]; }

id CFBridgingRelease(CFTypeRef X) { return [static_cast<id>(const_cast<void*>(X)) autorelease]; }

CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex numValues,
                         const CFArrayCallBacks* callBacks) {
    (void)allocator;
    pelistra::testing::standins::record("CFArrayCreate " + std::to_string(numValues) +
                                        (callBacks == nullptr ? " no callbacks" : " callbacks"));
    if (pelistra::testing::standins::world().arraysFail) {
        return nullptr;
    }
    StandinArray* array = [[StandinArray alloc] init];
    array->values.assign(values, values + numValues);
    return reinterpret_cast<CFArrayRef>(array);
}

namespace pelistra::testing::standins {

std::uintptr_t valueInArray(CFArrayRef array, std::size_t index) {
    auto* object = reinterpret_cast<StandinArray*>(const_cast<struct __CFArray*>(array));
    return reinterpret_cast<std::uintptr_t>(object->values.at(index));
}

std::size_t liveCoreObjects() { return live; }

} // namespace pelistra::testing::standins
