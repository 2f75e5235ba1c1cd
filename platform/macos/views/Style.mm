#include "platform/macos/views/Style.h"

#include "platform/macos/Conversions.h"
#include "platform/macos/Owned.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace pelistra::macos {

namespace {

constexpr double byteRange = 255;

NSColor* roleColor(ui::Role role) {
    switch (role) {
    case ui::Role::Secondary:
        return [NSColor secondaryLabelColor];
    case ui::Role::White:
        return [NSColor whiteColor];
    case ui::Role::Red:
        return [NSColor systemRedColor];
    case ui::Role::Green:
        return [NSColor systemGreenColor];
    case ui::Role::Accent:
        return [NSColor controlAccentColor];
    case ui::Role::Primary:
        break;
    }
    return [NSColor labelColor];
}

NSColor* rgbColor(const ui::Rgb& rgb) {
    return [NSColor colorWithSRGBRed:rgb.red / byteRange
                               green:rgb.green / byteRange
                                blue:rgb.blue / byteRange
                               alpha:1];
}

bool isDark(NSAppearance* appearance) {
    NSAppearanceName match = [appearance
        bestMatchFromAppearancesWithNames:[NSArray arrayWithObjects:NSAppearanceNameAqua,
                                                                    NSAppearanceNameDarkAqua, nil]];
    return [match isEqual:NSAppearanceNameDarkAqua] == YES;
}

NSColor* toneColor(const ui::Tone& toneToShow) {
    const ui::Tone tone = toneToShow;
    return [NSColor colorWithName:nil
                  dynamicProvider:^NSColor*(NSAppearance* appearance) {
                    return rgbColor(isDark(appearance) ? tone.dark : tone.light);
                  }];
}

NSFontTextStyle textStyle(ui::TextStyle style) {
    switch (style) {
    case ui::TextStyle::Caption2:
        return NSFontTextStyleCaption2;
    case ui::TextStyle::Caption:
        return NSFontTextStyleCaption1;
    case ui::TextStyle::Subheadline:
        return NSFontTextStyleSubheadline;
    case ui::TextStyle::Headline:
        return NSFontTextStyleHeadline;
    case ui::TextStyle::Title3:
        return NSFontTextStyleTitle3;
    case ui::TextStyle::Body:
        break;
    }
    return NSFontTextStyleBody;
}

NSFontWeight nativeWeight(ui::Weight weight) {
    switch (weight) {
    case ui::Weight::Medium:
        return NSFontWeightMedium;
    case ui::Weight::Semibold:
        return NSFontWeightSemibold;
    case ui::Weight::Bold:
        return NSFontWeightBold;
    case ui::Weight::Regular:
        break;
    }
    return NSFontWeightRegular;
}

NSRect centredSquare(NSRect area) {
    const double side = std::min(area.size.width, area.size.height);
    return NSMakeRect(NSMidX(area) - side / 2, NSMidY(area) - side / 2, side, side);
}

// Where a corner of radius 1 with continuous curvature runs, from one side to the other: the points
// of three curves, by their distances from the corner along the side before and after it. It is the
// corner that layers have.
struct CornerPoint {
    double before;
    double after;
};
constexpr std::array<CornerPoint, 10> continuousCorner = {{{1.528665, 0},
                                                           {1.088493, 0},
                                                           {0.868407, 0},
                                                           {0.631494, 0.074911},
                                                           {0.372824, 0.169059},
                                                           {0.169059, 0.372824},
                                                           {0.074911, 0.631494},
                                                           {0, 0.868407},
                                                           {0, 1.088493},
                                                           {0, 1.528665}}};

// How far from a corner its curve begins; a continuous one is an arc where it would not fit.
double reach(const ui::Outline& outline, Size area) {
    const double radius = cornerRadius(outline, area);
    const double continuous = continuousCorner.front().before * radius;
    const bool fits = 2 * continuous <= std::min(area.width, area.height);
    return hasContinuousCorners(outline) && fits ? continuous : radius;
}

NSBezierPath* continuousPath(double radius, NSRect area) {
    struct Corner {
        NSPoint at;
        NSPoint before;
        NSPoint after;
    };
    const std::array<Corner, 4> corners = {
        {{{NSMinX(area), NSMinY(area)}, {0, radius}, {radius, 0}},
         {{NSMaxX(area), NSMinY(area)}, {-radius, 0}, {0, radius}},
         {{NSMaxX(area), NSMaxY(area)}, {0, -radius}, {-radius, 0}},
         {{NSMinX(area), NSMaxY(area)}, {radius, 0}, {0, -radius}}}};
    NSBezierPath* path = [NSBezierPath bezierPath];
    for (const Corner& corner : corners) {
        const auto point = [&corner](std::size_t index) {
            const CornerPoint& part = continuousCorner.at(index);
            return NSMakePoint(
                corner.at.x + part.before * corner.before.x + part.after * corner.after.x,
                corner.at.y + part.before * corner.before.y + part.after * corner.after.y);
        };
        if ([path isEmpty]) {
            [path moveToPoint:point(0)];
        } else {
            [path lineToPoint:point(0)];
        }
        for (std::size_t curve = 1; curve < continuousCorner.size(); curve += 3) {
            [path curveToPoint:point(curve + 2)
                 controlPoint1:point(curve)
                 controlPoint2:point(curve + 1)];
        }
    }
    [path closePath];
    return path;
}

NSPoint place(const ui::UnitPoint& point, NSRect area) {
    return NSMakePoint(NSMinX(area) + point.x * area.size.width,
                       NSMinY(area) + point.y * area.size.height);
}

} // namespace

NSColor* nativeColor(const ui::Color& color) {
    const auto* role = std::get_if<ui::Role>(&color.base);
    NSColor* base = role != nullptr ? roleColor(*role) : toneColor(std::get<ui::Tone>(color.base));
    if (color.opacity >= 1) {
        return base;
    }
    const double opacity = color.opacity;
    return [NSColor colorWithName:nil
                  dynamicProvider:^NSColor*(NSAppearance* appearance) {
                    (void)appearance;
                    return [base colorWithAlphaComponent:opacity * [base alphaComponent]];
                  }];
}

NSFont* nativeFont(const ui::Font& font) {
    if (const auto* size = std::get_if<double>(&font.size)) {
        return [NSFont systemFontOfSize:*size weight:nativeWeight(ui::effectiveWeight(font))];
    }
    NSFont* styled = [NSFont preferredFontForTextStyle:textStyle(std::get<ui::TextStyle>(font.size))
                                               options:[NSDictionary dictionary]];
    return font.weight
               ? [NSFont systemFontOfSize:[styled pointSize] weight:nativeWeight(*font.weight)]
               : styled;
}

double cornerRadius(const ui::Outline& outline, Size area) {
    if (const auto* rounded = std::get_if<ui::RoundedRectangle>(&outline)) {
        return std::min({rounded->cornerRadius, area.width / 2, area.height / 2});
    }
    if (std::holds_alternative<ui::Rectangle>(outline)) {
        return 0;
    }
    return std::min(area.width, area.height) / 2;
}

bool hasContinuousCorners(const ui::Outline& outline) {
    const auto* rounded = std::get_if<ui::RoundedRectangle>(&outline);
    return rounded != nullptr && rounded->continuous;
}

NSImage* cornerMask(const ui::Outline& outline, Size area) {
    const double edge = std::ceil(reach(outline, area));
    if (edge == 0) {
        return nil;
    }
    const NSSize size = NSMakeSize(2 * edge + 1, 2 * edge + 1);
    const ui::RoundedRectangle corners = {.cornerRadius = cornerRadius(outline, area),
                                          .continuous = hasContinuousCorners(outline)};
    NSImage* mask = [NSImage imageWithSize:size
                                   flipped:NO
                            drawingHandler:^BOOL(NSRect bounds) {
                              [[NSColor blackColor] setFill];
                              [nativePath(corners, bounds) fill];
                              return YES;
                            }];
    [mask setCapInsets:NSEdgeInsetsMake(edge, edge, edge, edge)];
    [mask setResizingMode:NSImageResizingModeStretch];
    return mask;
}

NSBezierPath* nativePath(const ui::Outline& outline, NSRect area) {
    if (std::holds_alternative<ui::Circle>(outline)) {
        return [NSBezierPath bezierPathWithOvalInRect:centredSquare(area)];
    }
    const double radius = cornerRadius(outline, sizeOf(area.size));
    if (reach(outline, sizeOf(area.size)) > radius) {
        return continuousPath(radius, area);
    }
    return [NSBezierPath bezierPathWithRoundedRect:area xRadius:radius yRadius:radius];
}

void fill(const ui::LinearGradient& gradient, NSBezierPath* path, NSRect area) {
    NSMutableArray* colors = [NSMutableArray array];
    for (const ui::Color& color : gradient.colors) {
        [colors addObject:nativeColor(color)];
    }
    const auto native = Owned<NSGradient*>::adopt([[NSGradient alloc] initWithColors:colors]);
    [NSGraphicsContext saveGraphicsState];
    [path addClip];
    [native.get()
        drawFromPoint:place(gradient.start, area)
              toPoint:place(gradient.end, area)
              options:NSGradientDrawsBeforeStartingLocation | NSGradientDrawsAfterEndingLocation];
    [NSGraphicsContext restoreGraphicsState];
}

NSImage* nativeSymbol(const std::string& name, const ui::Font& font) {
    NSImage* symbol = [NSImage imageWithSystemSymbolName:nsString(name)
                                accessibilityDescription:nil];
    return [symbol
        imageWithSymbolConfiguration:[NSImageSymbolConfiguration
                                         configurationWithPointSize:[nativeFont(font) pointSize]
                                                             weight:nativeWeight(
                                                                        ui::effectiveWeight(
                                                                            font))]];
}

} // namespace pelistra::macos
