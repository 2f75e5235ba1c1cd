#include "tests/macos/Services.h"

#import <CoreGraphics/CoreGraphics.h>

// Linked before the frameworks, so that the front end finds these and not theirs.
namespace {

NSArray* __strong theWindowList = nil;
std::vector<pid_t> receivers;

} // namespace

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow) {
    (void)option;
    (void)relativeToWindow;
    return static_cast<CFArrayRef>(CFBridgingRetain(theWindowList));
}

void CGEventPostToPid(pid_t pid, CGEventRef event) {
    (void)event;
    receivers.push_back(pid);
}

bool CGPreflightPostEventAccess() { return true; }
bool CGPreflightScreenCaptureAccess() { return false; }
bool CGRequestScreenCaptureAccess() { return false; }

namespace pelistra::testing::standins {

void setWindowList(NSArray* windows) { theWindowList = windows; }

std::vector<pid_t> postedTo() { return std::exchange(receivers, {}); }

} // namespace pelistra::testing::standins
