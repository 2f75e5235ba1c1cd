#pragma once

#import <Foundation/Foundation.h>

// What a reference of CoreFoundation or CoreGraphics points to here: an object that is counted.
@interface StandinCoreObject : NSObject
@end
