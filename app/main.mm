#include "platform/macos/Owned.h"
#include "platform/macos/PelistraApp.h"

int main() {
    @autoreleasepool {
        const auto app = pelistra::macos::Owned<PelistraApp*>::adopt([[PelistraApp alloc] init]);
        [[NSApplication sharedApplication] setDelegate:app.get()];
        [NSApp run];
    }
    return 0;
}
