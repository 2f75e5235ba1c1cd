#include "platform/macos/views/NativeButton.h"

#include "platform/macos/Conversions.h"

namespace pelistra::macos {

namespace {

NSString* keyEquivalent(const ui::Button& button) {
    if (button.isDefaultAction) {
        return @"\r";
    }
    return button.role == ui::ButtonRole::Cancel ? @"\033" : @"";
}

// All of it every time: the button may have shown another style before.
void applyStyle(NSButton* button, const ui::Button& now) {
    // No border at rest, the system's quiet one under the pointer.
    const bool isQuiet =
        now.style == ui::ButtonStyle::Plain || now.style == ui::ButtonStyle::Borderless;
    const bool isProminent = now.style == ui::ButtonStyle::BorderedProminent;
    [button setBezelStyle:(isQuiet ? NSBezelStyleAccessoryBarAction : NSBezelStylePush)];
    [button setShowsBorderOnlyWhileMouseInside:(isQuiet ? YES : NO)];
    [button setBezelColor:(isProminent ? [NSColor controlAccentColor] : nil)];
    [button setControlSize:(now.size == ui::ControlSize::Large ? NSControlSizeLarge
                                                               : NSControlSizeRegular)];
}

void applyTitle(NSButton* button, const ui::Button& now, const ui::Text& text) {
    NSString* title = nsString(text.text);
    [button setTitle:title];
    const bool isDestructive = now.role == ui::ButtonRole::Destructive;
    [button setHasDestructiveAction:(isDestructive ? YES : NO)];
    if (isDestructive) {
        NSDictionary* look = [NSDictionary
            dictionaryWithObjectsAndKeys:[NSColor systemRedColor], NSForegroundColorAttributeName,
                                         [button font], NSFontAttributeName, nil];
        const auto red =
            Owned<NSAttributedString*>::adopt([[NSAttributedString alloc] initWithString:title
                                                                              attributes:look]);
        [button setAttributedTitle:red.get()];
    }
}

} // namespace

bool isNative(const ui::Button& button) { return button.label.as<ui::Text>() != nullptr; }

Owned<NSButton*> makeButton(Class kind) {
    auto made = Owned<NSButton*>::adopt([[kind alloc] initWithFrame:NSZeroRect]);
    [made.get() setButtonType:NSButtonTypeMomentaryPushIn];
    [made.get() setTitle:@""];
    return made;
}

void showButton(NSButton* button, const ui::Button& now) {
    applyStyle(button, now);
    applyTitle(button, now, *now.label.as<ui::Text>());
    [button setKeyEquivalent:keyEquivalent(now)];
}

} // namespace pelistra::macos
