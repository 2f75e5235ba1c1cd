#include "platform/macos/views/RowScrollView.h"

#include <algorithm>
#include <cmath>

namespace {

// What one notch of a wheel without precise deltas moves, in points.
constexpr double pointsPerLine = 16;

} // namespace

@implementation PelistraRowScrollView

- (void)scrollWheel:(NSEvent*)event {
    const double down = [event scrollingDeltaY];
    if (std::abs([event scrollingDeltaX]) >= std::abs(down)) {
        [super scrollWheel:event];
        return;
    }
    const double points = [event hasPreciseScrollingDeltas] ? down : down * pointsPerLine;
    NSClipView* clip = [self contentView];
    const double furthest =
        std::max(0.0, [[self documentView] frame].size.width - [clip bounds].size.width);
    NSPoint origin = [clip bounds].origin;
    origin.x = std::clamp(origin.x - points, 0.0, furthest);
    [clip scrollToPoint:origin];
    [self reflectScrolledClipView:clip];
}

@end
