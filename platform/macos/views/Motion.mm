#include "platform/macos/views/Motion.h"

#include "platform/macos/Owned.h"
#include "platform/macos/views/Element.h"

#import <QuartzCore/QuartzCore.h>

#include <utility>

namespace pelistra::macos {

namespace {

Owned<CABasicAnimation*> makeAnimation(const ui::Animation& animation, NSString* keyPath) {
    if (const auto* spring = std::get_if<ui::Spring>(&animation)) {
        const auto result = Owned<CASpringAnimation*>::adopt([[CASpringAnimation alloc]
            initWithPerceptualDuration:spring->response
                                bounce:1 - spring->dampingFraction]);
        [result.get() setDuration:[result.get() settlingDuration]];
        [result.get() setKeyPath:keyPath];
        return Owned<CABasicAnimation*>::share(result.get());
    }
    const auto result =
        Owned<CABasicAnimation*>::share([CABasicAnimation animationWithKeyPath:keyPath]);
    [result.get() setDuration:std::get<ui::EaseOut>(animation).seconds];
    [result.get()
        setTimingFunction:[CAMediaTimingFunction functionWithName:kCAMediaTimingFunctionEaseOut]];
    return result;
}

// Where the layer of a view has to be for the view to look scaled about its centre: the layers of
// views are anchored at a corner.
NSValue* scaledPosition(NSView* view, double scale) {
    const NSSize size = [view frame].size;
    const CGPoint position = [[view layer] position];
    return [NSValue valueWithPoint:NSMakePoint(position.x + size.width * (1 - scale) / 2,
                                               position.y + size.height * (1 - scale) / 2)];
}

} // namespace

double Motion::duration() const { return [makeAnimation(animation_, @"opacity").get() duration]; }

void Motion::animate(NSView* view, NSString* keyPath, id from, NSValue* to) const {
    const auto animation = makeAnimation(animation_, keyPath);
    [animation.get() setFromValue:from];
    if (to != nil) {
        [animation.get() setToValue:to];
    }
    [[view layer] addAnimation:animation.get() forKey:keyPath];
}

void Motion::move(NSView* view, NSRect frame) const {
    const NSRect before = [view frame];
    const CGPoint position = [[view layer] position];
    const CGRect bounds = [[view layer] bounds];
    [view setFrame:frame];
    // A view that is new has no place to come from.
    if (NSIsEmptyRect(before)) {
        return;
    }
    animate(view, @"position", [NSValue valueWithPoint:NSMakePoint(position.x, position.y)]);
    if (!NSEqualSizes(before.size, frame.size)) {
        animate(view, @"bounds",
                [NSValue valueWithRect:NSMakeRect(bounds.origin.x, bounds.origin.y,
                                                  bounds.size.width, bounds.size.height)]);
    }
}

void Motion::recolor(NSView* view) const {
    CGColorRef before = [[view layer] backgroundColor];
    if (before != nullptr) {
        animate(view, @"backgroundColor", (__bridge id)before);
    }
}

void Motion::scaleFrom(NSView* view, double scale) const {
    if (scale != 1) {
        animate(view, @"transform.scale", [NSNumber numberWithDouble:scale]);
        animate(view, @"position", scaledPosition(view, scale));
    }
}

void Motion::scaleTo(NSView* view, double scale) const {
    if (scale != 1) {
        animate(view, @"transform.scale", [NSNumber numberWithDouble:1],
                [NSNumber numberWithDouble:scale]);
        animate(view, @"position", scaledPosition(view, 1), scaledPosition(view, scale));
    }
}

void Motion::enter(NSView* view, double scale) const {
    animate(view, @"opacity", [NSNumber numberWithDouble:0]);
    // The view gets its place later in this update.
    const auto kept = Owned<NSView*>::share(view);
    const Motion copy = *this;
    mainQueue_->async([kept, copy, scale] { copy.scaleFrom(kept.get(), scale); });
}

void Motion::leave(NSView* view, double scale, std::shared_ptr<Element> owner) const {
    [view setAlphaValue:0];
    animate(view, @"opacity", [NSNumber numberWithDouble:1]);
    scaleTo(view, scale);
    mainQueue_->asyncAfter(Seconds(duration()),
                           [owner = std::move(owner)]() mutable { owner.reset(); });
}

} // namespace pelistra::macos
