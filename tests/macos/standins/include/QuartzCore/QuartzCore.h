// Stand-in: see tests/macos/standins/README.md.
#pragma once

#include <CoreGraphics/CoreGraphics.h>

@class NSView;

typedef NSString* CALayerCornerCurve;
extern CALayerCornerCurve const kCACornerCurveCircular;
extern CALayerCornerCurve const kCACornerCurveContinuous;
typedef NSString* CAMediaTimingFunctionName;
extern CAMediaTimingFunctionName const kCAMediaTimingFunctionEaseOut;

@interface CAMediaTimingFunction : NSObject
+ (instancetype)functionWithName:(CAMediaTimingFunctionName)name;
@end

@interface CAAnimation : NSObject {
    CFTimeInterval duration_;
}
- (void)setDuration:(CFTimeInterval)duration;
- (CFTimeInterval)duration;
- (void)setTimingFunction:(CAMediaTimingFunction*)timingFunction;
@end

@interface CABasicAnimation : CAAnimation {
    NSString* keyPath_;
    id fromValue_;
    id toValue_;
}
+ (instancetype)animationWithKeyPath:(NSString*)path;
- (NSString*)keyPath;
- (void)setKeyPath:(NSString*)keyPath;
- (void)setFromValue:(id)fromValue;
- (id)fromValue;
- (void)setToValue:(id)toValue;
- (id)toValue;
@end

@interface CASpringAnimation : CABasicAnimation {
    CFTimeInterval perceptualDuration_;
    CGFloat bounce_;
}
- (instancetype)initWithPerceptualDuration:(CFTimeInterval)perceptualDuration
                                    bounce:(CGFloat)bounce;
- (CFTimeInterval)settlingDuration;
- (CFTimeInterval)perceptualDuration;
- (CGFloat)bounce;
@end

@interface CALayer : NSObject {
    CGFloat cornerRadius_;
    NSString* cornerCurve_;
    id backgroundColor_;
    NSMutableDictionary* animations_;
  @public
    // The view whose layer it is, which keeps it.
    NSView* view;
}
- (CGPoint)position;
- (CGRect)bounds;
- (void)setCornerRadius:(CGFloat)radius;
- (CGFloat)cornerRadius;
- (void)setCornerCurve:(CALayerCornerCurve)curve;
- (CALayerCornerCurve)cornerCurve;
- (void)setContents:(id)contents;
- (void)setBackgroundColor:(CGColorRef)color;
- (CGColorRef)backgroundColor;
- (void)addAnimation:(CAAnimation*)animation forKey:(NSString*)key;
- (CAAnimation*)animationForKey:(NSString*)key;
- (void)removeAllAnimations;
@end
