#include "platform/macos/ActionTarget.h"

@implementation PelistraActionTarget

- (void)perform:(id)sender {
    (void)sender;
    // The copy survives an action that replaces the action.
    const std::function<void()> running = action;
    if (running) {
        running();
    }
}

@end
