#include "World.h"

#include <cstring>

// GNUstep with GCC's runtime keeps blocks by sending them retain and release, but the blocks of
// libBlocksRuntime belong to no class. Their class pointers point to these three arrays, which are
// large enough to take a copy of a class.
extern "C" {
extern void* _NSConcreteStackBlock[32];
extern void* _NSConcreteGlobalBlock[32];
extern void* _NSConcreteMallocBlock[32];
}

@interface StandinBlock : NSObject
@end

@implementation StandinBlock
- (id)retain {
    return static_cast<id>(_Block_copy(self));
}
- (oneway void)release {
    _Block_release(self);
}
- (id)copyWithZone:(NSZone*)zone {
    (void)zone;
    return static_cast<id>(_Block_copy(self));
}
@end

namespace pelistra::testing::standins {

void installBlocks() {
    // Sending a message makes the runtime complete the class.
    Class blockClass = [StandinBlock class];
    constexpr std::size_t classSize = 17 * sizeof(void*);
    for (void* target :
         {static_cast<void*>(_NSConcreteStackBlock), static_cast<void*>(_NSConcreteGlobalBlock),
          static_cast<void*>(_NSConcreteMallocBlock)}) {
        std::memcpy(target, static_cast<const void*>(blockClass), classSize);
    }
}

} // namespace pelistra::testing::standins
