// Stand-in: see tests/macos/standins/README.md.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <sys/types.h>

typedef NSPoint CGPoint;
typedef NSSize CGSize;
typedef NSRect CGRect;

static inline CGRect CGRectMake(CGFloat x, CGFloat y, CGFloat width, CGFloat height) {
    return NSMakeRect(x, y, width, height);
}
static inline CGPoint CGPointMake(CGFloat x, CGFloat y) { return NSMakePoint(x, y); }

#ifdef __cplusplus
extern "C" {
#endif

extern const CGRect CGRectNull;

// Windows
typedef uint32_t CGWindowID;
typedef uint32_t CGWindowListOption;
typedef uint32_t CGWindowImageOption;
enum : CGWindowListOption { kCGWindowListOptionAll = 0 };
enum : CGWindowImageOption {
    kCGWindowImageBoundsIgnoreFraming = (1 << 0),
    kCGWindowImageBestResolution = (1 << 3),
};
#define kCGNullWindowID ((CGWindowID)0)

extern const CFStringRef kCGWindowNumber;
extern const CFStringRef kCGWindowLayer;
extern const CFStringRef kCGWindowBounds;
extern const CFStringRef kCGWindowOwnerPID;
extern const CFStringRef kCGWindowOwnerName;
extern const CFStringRef kCGWindowName;

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow);
bool CGPreflightScreenCaptureAccess(void);
bool CGRequestScreenCaptureAccess(void);

// Images
typedef struct CGImage* CGImageRef;
size_t CGImageGetWidth(CGImageRef image);
size_t CGImageGetHeight(CGImageRef image);

// Colours
typedef struct CGColor* CGColorRef;

// Events
typedef struct __CGEvent* CGEventRef;
typedef struct __CGEventSource* CGEventSourceRef;
typedef enum : int32_t { kCGEventSourceStatePrivate = -1 } CGEventSourceStateID;
typedef enum : uint32_t { kCGMouseButtonLeft = 0 } CGMouseButton;
typedef enum : uint32_t { kCGEventLeftMouseDown = 1, kCGEventLeftMouseUp = 2 } CGEventType;
typedef enum : uint32_t {
    kCGMouseEventClickState = 1,
    kCGEventTargetUnixProcessID = 40,
    kCGMouseEventWindowUnderMousePointer = 91,
    kCGMouseEventWindowUnderMousePointerThatCanHandleThisEvent = 92,
} CGEventField;

CGEventSourceRef CGEventSourceCreate(CGEventSourceStateID stateID);
CGEventRef CGEventCreateMouseEvent(CGEventSourceRef source, CGEventType mouseType,
                                   CGPoint mouseCursorPosition, CGMouseButton mouseButton);
void CGEventSetIntegerValueField(CGEventRef event, CGEventField field, int64_t value);
void CGEventPostToPid(pid_t pid, CGEventRef event);
bool CGPreflightPostEventAccess(void);

#ifdef __cplusplus
}
#endif
