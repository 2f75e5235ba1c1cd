#pragma once

#include "platform/macos/Owned.h"

#import <AppKit/AppKit.h>

namespace pelistra::macos {

// The menu bar of an accessory application never shows, but its key equivalents work while one of
// the application's windows has the focus: settings, closing and minimising a window, quitting.
[[nodiscard]] Owned<NSMenu*> makeMainMenu(id settingsTarget, SEL settingsAction);

} // namespace pelistra::macos
