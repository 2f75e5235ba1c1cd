#include "platform/macos/views/LabelField.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/views/Style.h"

#include <algorithm>
#include <cmath>

namespace pelistra::macos {

namespace {

// Further than any text reaches.
constexpr double unlimited = 100000;
// What a text field leaves free left and right of its text.
constexpr double cellMargin = 2;

} // namespace

Owned<NSView*> makeLabel() {
    const auto field = Owned<NSTextField*>::adopt([[NSTextField alloc] initWithFrame:NSZeroRect]);
    [field.get() setEditable:NO];
    [field.get() setSelectable:NO];
    [field.get() setBordered:NO];
    [field.get() setBezeled:NO];
    [field.get() setDrawsBackground:NO];
    return Owned<NSView*>::share(field.get());
}

void showText(NSTextField* field, const ui::Text& text) {
    const bool isSingleLine = text.lineLimit == 1;
    NSString* shown = nsString(text.text);
    if (isSingleLine) {
        shown = [[shown componentsSeparatedByCharactersInSet:[NSCharacterSet newlineCharacterSet]]
            componentsJoinedByString:@" "];
    }
    [field setStringValue:shown];
    [field setFont:nativeFont(text.font)];
    [field setTextColor:nativeColor(text.foreground.value_or(ui::Color{}))];
    [[field cell] setWraps:(isSingleLine ? NO : YES)];
    [[field cell]
        setLineBreakMode:(isSingleLine ? NSLineBreakByTruncatingTail : NSLineBreakByWordWrapping)];
    [field setAlignment:(text.multilineAlignment == ui::TextAlignment::Center
                             ? NSTextAlignmentCenter
                             : NSTextAlignmentNatural)];
}

Size measureLabel(NSTextField* field, const std::optional<double>& width) {
    const bool wraps = [[field cell] wraps] == YES;
    const double limit = wraps ? std::min(width.value_or(unlimited), unlimited) : unlimited;
    // Some of the margins do not count: the field is placed as if they were not there.
    const NSEdgeInsets uncounted = [field alignmentRectInsets];
    const double margins = 2 * cellMargin - uncounted.left - uncounted.right;
    const NSRect bounds = [[field attributedStringValue]
        boundingRectWithSize:NSMakeSize(std::max(limit - margins, 0.0), unlimited)
                     options:NSStringDrawingUsesLineFragmentOrigin];
    const double natural = std::ceil(bounds.size.width) + margins;
    // A text that is cut takes no more than it is offered.
    return {.width = std::min(natural, width.value_or(natural)),
            .height = std::ceil(bounds.size.height)};
}

} // namespace pelistra::macos
