#pragma once

#include "platform/macos/Owned.h"
#include "ui/Nodes.h"

#import <AppKit/AppKit.h>

namespace pelistra::macos {

// A button whose label is nothing but a text is one of the system's own. Those with a symbol alone
// colour it only without a border, and show a border under the pointer only in the key window,
// which the second row never is.
[[nodiscard]] bool isNative(const ui::Button& button);

// A push button without a title.
[[nodiscard]] Owned<NSButton*> makeButton(Class kind);

// Gives a push button the look of the button, which is native.
void showButton(NSButton* button, const ui::Button& now);

} // namespace pelistra::macos
