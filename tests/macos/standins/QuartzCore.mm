#include "Format.h"
#include "World.h"

#import <AppKit/AppKit.h>

using namespace pelistra::testing::standins;

CALayerCornerCurve const kCACornerCurveCircular = @"circular";
CALayerCornerCurve const kCACornerCurveContinuous = @"continuous";
CAMediaTimingFunctionName const kCAMediaTimingFunctionEaseOut = @"easeOut";

@implementation CAMediaTimingFunction
+ (instancetype)functionWithName:(CAMediaTimingFunctionName)name {
    record(std::string("CAMediaTimingFunction ") + [name UTF8String]);
    return [[[self alloc] init] autorelease];
}
@end

@implementation CAAnimation
- (void)setDuration:(CFTimeInterval)duration {
    record(format("CAAnimation setDuration {}", duration));
    duration_ = duration;
}
- (CFTimeInterval)duration {
    return duration_;
}
- (void)setTimingFunction:(CAMediaTimingFunction*)timingFunction {
    (void)timingFunction;
}
@end

@implementation CABasicAnimation
+ (instancetype)animationWithKeyPath:(NSString*)path {
    CABasicAnimation* animation = [[[self alloc] init] autorelease];
    [animation setKeyPath:path];
    return animation;
}
- (void)dealloc {
    [keyPath_ release];
    [fromValue_ release];
    [toValue_ release];
    [super dealloc];
}
- (NSString*)keyPath {
    return keyPath_;
}
- (void)setKeyPath:(NSString*)keyPath {
    [keyPath_ release];
    keyPath_ = [keyPath copy];
}
- (void)setFromValue:(id)fromValue {
    [fromValue_ release];
    fromValue_ = [fromValue retain];
}
- (id)fromValue {
    return fromValue_;
}
- (void)setToValue:(id)toValue {
    record(format("CABasicAnimation {} setToValue {}", [keyPath_ UTF8String],
                  [[toValue description] UTF8String]));
    [toValue_ release];
    toValue_ = [toValue retain];
}
- (id)toValue {
    return toValue_;
}
@end

@implementation CASpringAnimation
- (instancetype)initWithPerceptualDuration:(CFTimeInterval)perceptualDuration
                                    bounce:(CGFloat)bounce {
    self = [super init];
    record(format("CASpringAnimation perceptualDuration={} bounce={}", perceptualDuration, bounce));
    perceptualDuration_ = perceptualDuration;
    bounce_ = bounce;
    return self;
}
- (CFTimeInterval)settlingDuration {
    return 1;
}
- (CFTimeInterval)perceptualDuration {
    return perceptualDuration_;
}
- (CGFloat)bounce {
    return bounce_;
}
@end

@implementation CALayer
- (instancetype)init {
    self = [super init];
    animations_ = [[NSMutableDictionary alloc] init];
    return self;
}
- (void)dealloc {
    [animations_ release];
    [cornerCurve_ release];
    [backgroundColor_ release];
    [super dealloc];
}
- (CGPoint)position {
    return [view frame].origin;
}
- (CGRect)bounds {
    return [view bounds];
}
- (void)setContents:(id)contents {
    (void)contents;
}
- (void)setBackgroundColor:(CGColorRef)color {
    id former = backgroundColor_;
    backgroundColor_ = [reinterpret_cast<id>(color) retain];
    [former release];
}
- (CGColorRef)backgroundColor {
    return reinterpret_cast<CGColorRef>(backgroundColor_);
}
- (void)setCornerRadius:(CGFloat)radius {
    cornerRadius_ = radius;
}
- (CGFloat)cornerRadius {
    return cornerRadius_;
}
- (void)setCornerCurve:(CALayerCornerCurve)curve {
    [cornerCurve_ release];
    cornerCurve_ = [curve copy];
}
- (CALayerCornerCurve)cornerCurve {
    return cornerCurve_;
}
- (void)addAnimation:(CAAnimation*)animation forKey:(NSString*)key {
    [animations_ setObject:animation forKey:key];
}
- (CAAnimation*)animationForKey:(NSString*)key {
    return [animations_ objectForKey:key];
}
- (void)removeAllAnimations {
    [animations_ removeAllObjects];
}
@end
