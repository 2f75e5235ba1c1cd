#pragma once

#import <Foundation/Foundation.h>

#include <functional>

// The target of a control: sending it `perform:` calls the function.
@interface PelistraActionTarget : NSObject {
  @public
    std::function<void()> action;
}
- (void)perform:(id)sender;
@end
