#include "CoreObject.h"
#include "Counters.h"
#include "Format.h"
#include "MenuBar.h"
#include "World.h"
#include "tests/macos/Services.h"

#include <algorithm>
#include <dlfcn.h>
#include <string_view>

using namespace pelistra::testing::standins;

namespace pelistra::testing::standins {
std::uintptr_t valueInArray(CFArrayRef array, std::size_t index);
}

namespace {

constexpr std::int32_t connection = 77;
constexpr std::string_view skyLightPath =
    "/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight";
std::size_t openHandles = 0;
int skyLightHandle = 0;

CFStringRef constant(NSString* text) { return reinterpret_cast<CFStringRef>(text); }

NSString* string(const std::string& text) { return [NSString stringWithUTF8String:text.c_str()]; }

NSDictionary* describe(const MenuBarWindow& window) {
    const auto controlCentre = world().controlCentre;
    return @{
        @"kCGWindowNumber" : @(window.window),
        @"kCGWindowOwnerPID" : @(controlCentre.value_or(window.ownerPid)),
        @"kCGWindowOwnerName" : string(controlCentre ? "Control Center" : window.ownerName),
        @"kCGWindowName" : string(controlCentre ? "" : window.name),
        @"kCGWindowLayer" : @25,
        @"kCGWindowBounds" : @{
            @"X" : @(window.frame.origin.x),
            @"Y" : @(window.frame.origin.y),
            @"Width" : @(window.frame.size.width),
            @"Height" : @(window.frame.size.height),
        },
    };
}

std::int32_t mainConnectionId() {
    record("SLSMainConnectionID");
    return connection;
}

std::int32_t getWindowCount(std::int32_t cid, std::int32_t target, std::int32_t* count) {
    record(format("SLSGetWindowCount {} {} {}", cid, target, *count));
    *count = static_cast<std::int32_t>(menuBarWindows().size());
    return 0;
}

std::int32_t getProcessMenuBarWindowList(std::int32_t cid, std::int32_t target,
                                         std::int32_t capacity, std::uint32_t* list,
                                         std::int32_t* count) {
    record(format("SLSGetProcessMenuBarWindowList {} {} {} {}", cid, target, capacity, *count));
    *count = 0;
    for (const MenuBarWindow& window : menuBarWindows()) {
        if (*count < capacity) {
            list[(*count)++] = window.window;
        }
    }
    return 0;
}

std::int32_t getScreenRectForWindow(std::int32_t cid, std::uint32_t window, CGRect* rect) {
    (void)cid;
    const auto frame = menuBarFrame(window);
    if (!frame) {
        return 1000;
    }
    *rect = *frame;
    return 0;
}

void* skyLightFunction(std::string_view symbol) {
    if (world().missingSymbols.contains(std::string(symbol))) {
        return nullptr;
    }
    if (symbol == "SLSMainConnectionID") {
        return reinterpret_cast<void*>(&mainConnectionId);
    }
    if (symbol == "SLSGetWindowCount") {
        return reinterpret_cast<void*>(&getWindowCount);
    }
    if (symbol == "SLSGetProcessMenuBarWindowList") {
        return reinterpret_cast<void*>(&getProcessMenuBarWindowList);
    }
    if (symbol == "SLSGetScreenRectForWindow") {
        return reinterpret_cast<void*>(&getScreenRectForWindow);
    }
    return nullptr;
}

} // namespace

@interface StandinCGImage : StandinCoreObject {
  @public
    std::size_t width;
    std::size_t height;
}
@end
@implementation StandinCGImage
@end

namespace {

constexpr double pixelsPerPoint = 2;

CGImageRef createImageFromArray(CGRect bounds, CFArrayRef windows, CGWindowImageOption options) {
    const auto window = static_cast<std::uint32_t>(valueInArray(windows, 0));
    record(format("CGWindowListCreateImageFromArray {} {} {}",
                  NSEqualRects(bounds, CGRectNull) ? "CGRectNull" : "rect", window, options));
    const auto frame = menuBarFrame(window);
    if (!frame || world().uncapturableWindows.contains(window)) {
        return nullptr;
    }
    StandinCGImage* image = [[StandinCGImage alloc] init];
    image->width = static_cast<std::size_t>(frame->size.width * pixelsPerPoint);
    image->height = static_cast<std::size_t>(frame->size.height * pixelsPerPoint);
    return reinterpret_cast<CGImageRef>(image);
}

} // namespace

void* standinDlopen(const char* path, int mode) {
    record(format("dlopen {} {}", path, mode));
    if (path != skyLightPath || !world().skyLightExists) {
        return nullptr;
    }
    ++openHandles;
    return &skyLightHandle;
}

void* standinDlsym(void* handle, const char* symbol) {
    record(format("dlsym {} {}", handle == RTLD_DEFAULT ? "RTLD_DEFAULT" : "handle", symbol));
    if (handle == &skyLightHandle) {
        return skyLightFunction(symbol);
    }
    const bool isCapture = std::string_view(symbol) == "CGWindowListCreateImageFromArray";
    return isCapture && world().captureFunctionExists
               ? reinterpret_cast<void*>(&createImageFromArray)
               : nullptr;
}

int standinDlclose(void* handle) {
    record(format("dlclose {}", handle == &skyLightHandle ? "handle" : "other"));
    --openHandles;
    return 0;
}

const CGRect CGRectNull = {{HUGE_VAL, HUGE_VAL}, {0, 0}};
const CFStringRef kCGWindowNumber = constant(@"kCGWindowNumber");
const CFStringRef kCGWindowLayer = constant(@"kCGWindowLayer");
const CFStringRef kCGWindowBounds = constant(@"kCGWindowBounds");
const CFStringRef kCGWindowOwnerPID = constant(@"kCGWindowOwnerPID");
const CFStringRef kCGWindowOwnerName = constant(@"kCGWindowOwnerName");
const CFStringRef kCGWindowName = constant(@"kCGWindowName");

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow) {
    record(format("CGWindowListCopyWindowInfo {} {}", option, relativeToWindow));
    if (world().windowListIsNull) {
        return nullptr;
    }
    NSMutableArray* list = [[NSMutableArray alloc] init];
    for (NSDictionary* other : world().otherWindows) {
        [list addObject:other];
    }
    for (const MenuBarWindow& window : menuBarWindows()) {
        [list addObject:describe(window)];
    }
    return reinterpret_cast<CFArrayRef>(list);
}

bool CGPreflightScreenCaptureAccess() {
    record("CGPreflightScreenCaptureAccess");
    return world().captureGranted;
}

bool CGRequestScreenCaptureAccess() {
    record("CGRequestScreenCaptureAccess");
    world().captureGranted = world().captureGranted || world().captureRequestGrants;
    return world().captureGranted;
}

size_t CGImageGetWidth(CGImageRef image) { return reinterpret_cast<StandinCGImage*>(image)->width; }

size_t CGImageGetHeight(CGImageRef image) {
    return reinterpret_cast<StandinCGImage*>(image)->height;
}

@implementation NSImage (StandinCapture)

- (instancetype)initWithCGImage:(CGImageRef)cgImage size:(NSSize)size {
    auto* pixels = reinterpret_cast<StandinCGImage*>(cgImage);
    record(format("NSImage initWithCGImage {}x{} {{{}, {}}}", pixels->width, pixels->height,
                  size.width, size.height));
    self = [self initWithSize:size];
    NSBitmapImageRep* bitmap =
        [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                pixelsWide:static_cast<NSInteger>(pixels->width)
                                                pixelsHigh:static_cast<NSInteger>(pixels->height)
                                             bitsPerSample:8
                                           samplesPerPixel:4
                                                  hasAlpha:YES
                                                  isPlanar:NO
                                            colorSpaceName:NSCalibratedRGBColorSpace
                                               bytesPerRow:0
                                              bitsPerPixel:32];
    // A picture that can be told from the others: a blue square with a light edge.
    const NSInteger rowLength = [bitmap bytesPerRow];
    unsigned char* data = [bitmap bitmapData];
    for (NSInteger y = 0; y < [bitmap pixelsHigh]; ++y) {
        for (NSInteger x = 0; x < [bitmap pixelsWide]; ++x) {
            unsigned char* pixel = data + y * rowLength + x * 4;
            pixel[0] = 40;
            pixel[1] = static_cast<unsigned char>(110 + x);
            pixel[2] = 220;
            pixel[3] = 255;
        }
    }
    [self addRepresentation:bitmap];
    [bitmap release];
    return self;
}

@end

@interface StandinEventSource : StandinCoreObject
@end
@implementation StandinEventSource
@end

@interface StandinEvent : StandinCoreObject {
  @public
    PostedEvent event;
}
@end
@implementation StandinEvent
@end

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID) {
    record(format("CGEventSourceCreate {}", static_cast<std::int32_t>(stateID)));
    return world().eventSourcesFail
               ? nullptr
               : reinterpret_cast<CGEventSourceRef>([[StandinEventSource alloc] init]);
}

CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType mouseType,
                                   CGPoint mouseCursorPosition, CGMouseButton mouseButton) {
    record(format("CGEventCreateMouseEvent {} {} {{{}, {}}} {}",
                  source != nullptr ? "source" : "null", static_cast<std::uint32_t>(mouseType),
                  mouseCursorPosition.x, mouseCursorPosition.y,
                  static_cast<std::uint32_t>(mouseButton)));
    if (world().failingEventTypes.contains(mouseType)) {
        return nullptr;
    }
    StandinEvent* event = [[StandinEvent alloc] init];
    event->event.type = mouseType;
    event->event.x = mouseCursorPosition.x;
    event->event.y = mouseCursorPosition.y;
    event->event.button = mouseButton;
    return reinterpret_cast<CGEventRef>(event);
}

void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, int64_t value) {
    auto* object = reinterpret_cast<StandinEvent*>(event);
    record(format("CGEventSetIntegerValueField type={} {} {}", object->event.type,
                  static_cast<std::uint32_t>(field), value));
    object->event.fields.emplace_back(field, value);
}

bool CGPreflightPostEventAccess() {
    record("CGPreflightPostEventAccess");
    return world().postingPermitted;
}

void CGEventPostToPid(pid_t pid, CGEventRef event) {
    PostedEvent posted = reinterpret_cast<StandinEvent*>(event)->event;
    posted.pid = pid;
    record(format("CGEventPostToPid {} type={}", pid, posted.type));
    world().postedEvents.push_back(std::move(posted));
    if (world().pointerMovesWithPosts) {
        world().pointer.x += 1;
    }
}

namespace pelistra::testing::standins {

void setWindowList(NSArray* windows) {
    world().otherWindows.clear();
    for (NSDictionary* window in windows) {
        world().otherWindows.push_back([[window retain] autorelease]);
    }
}

std::vector<pid_t> postedTo() {
    std::vector<pid_t> receivers;
    for (const PostedEvent& event : world().postedEvents) {
        receivers.push_back(event.pid);
    }
    return receivers;
}

std::size_t openLibraries() { return openHandles; }

} // namespace pelistra::testing::standins
