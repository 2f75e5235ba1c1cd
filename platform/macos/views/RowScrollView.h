#pragma once

#import <AppKit/AppKit.h>

// Scrolls sideways, by wheels of both directions, without scroll bars.
@interface PelistraRowScrollView : NSScrollView
@end
