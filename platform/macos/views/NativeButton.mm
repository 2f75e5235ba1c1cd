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

void applyStyle(NSButton* button, const ui::Button& now) {
    switch (now.style) {
    case ui::ButtonStyle::BorderedProminent:
        [button setBezelStyle:NSBezelStylePush];
        [button setBezelColor:[NSColor controlAccentColor]];
        break;
    case ui::ButtonStyle::Plain:
    case ui::ButtonStyle::Borderless:
        // No border at rest, the system's quiet one under the pointer.
        [button setBezelStyle:NSBezelStyleAccessoryBarAction];
        [button setShowsBorderOnlyWhileMouseInside:YES];
        break;
    case ui::ButtonStyle::Automatic:
        [button setBezelStyle:NSBezelStylePush];
        break;
    }
    [button setControlSize:(now.size == ui::ControlSize::Large ? NSControlSizeLarge
                                                               : NSControlSizeRegular)];
}

void applyTitle(NSButton* button, const ui::Button& now, const ui::Text& text) {
    NSString* title = nsString(text.text);
    [button setTitle:title];
    if (now.role == ui::ButtonRole::Destructive) {
        [button setHasDestructiveAction:YES];
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
