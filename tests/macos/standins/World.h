#pragma once

#include "tests/macos/RunLoop.h"

#import <AppKit/AppKit.h>
#import <ServiceManagement/ServiceManagement.h>
#include <os/log.h>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

// The machine that the stand-ins show to the front end, and what the front end asked of it. The
// functions that are stood in for are plain C functions and class methods, so the one world is
// reached through world(); resetWorld() gives every test a fresh one.
namespace pelistra::testing::standins {

// Another application's item in the menu bar.
struct ForeignItem {
    std::uint32_t window = 0;
    pid_t ownerPid = 0;
    std::string ownerName;
    std::string windowName = {};
    double width = 30;
};

struct RunningApp {
    std::string name;
    std::optional<std::string> bundleIdentifier = std::nullopt;
    std::optional<std::string> bundlePath = std::nullopt;
    bool hasIcon = true;
    bool activates = true;
    // Ending, and still among the running ones.
    bool isTerminated = false;
};

struct ScreenShape {
    NSRect frame;
    NSRect visibleFrame;
    NSRect auxiliaryTopLeftArea = NSZeroRect;
    NSRect auxiliaryTopRightArea = NSZeroRect;
};

struct LogLine {
    std::string subsystem;
    std::string category;
    os_log_type_t type;
    std::string message;

    bool operator==(const LogLine&) const = default;
};

struct PostedEvent {
    pid_t pid = 0;
    std::uint32_t type = 0;
    double x = 0;
    double y = 0;
    std::uint32_t button = 0;
    // In the order in which they were set.
    std::vector<std::pair<std::uint32_t, std::int64_t>> fields;

    bool operator==(const PostedEvent&) const = default;
};

struct World {
    // What was asked, in order: the class or function, the selector, the arguments.
    std::vector<std::string> journal;
    std::vector<LogLine> log;

    // The menu bar lies at the top of the first screen. From the left: the hidden items, the
    // divider, the items between, the control; everything is laid out from the right edge by the
    // items' lengths.
    bool statusItemsHaveButtons = true;
    bool dividerIsRightOfControl = false;
    double barHeight = 24;
    bool menuBarIsDark = false;
    // As in macOS 26: the window list has every item's window under this process and name.
    std::optional<pid_t> controlCentre;
    std::vector<ForeignItem> hiddenItems;
    std::vector<ForeignItem> itemsBetween;

    std::vector<ScreenShape> screens;
    // Of every window.
    double backingScale = 1;

    // The window server
    bool windowListIsNull = false;
    // Reported before the windows of the menu bar.
    std::vector<NSDictionary*> otherWindows;
    bool skyLightExists = true;
    std::set<std::string> missingSymbols;

    bool captureGranted = false;
    bool captureRequestGrants = false;
    bool captureFunctionExists = true;
    // CoreFoundation makes none.
    bool arraysFail = false;
    std::set<std::uint32_t> uncapturableWindows;

    // Screen coordinates.
    NSPoint pointer = NSMakePoint(400, 300);
    // The user moves it while an event is being posted.
    bool pointerMovesWithPosts = false;

    bool postingPermitted = true;
    bool eventSourcesFail = false;
    std::set<std::uint32_t> failingEventTypes;
    std::vector<PostedEvent> postedEvents;

    std::map<pid_t, RunningApp> applications;
    // Of the program itself.
    std::optional<std::string> bundleIdentifier;
    bool opensUrls = true;
    bool reduceMotion = false;

    bool refusesMonitors = false;
    // Presses the button of the alert that was shown last; empty before the first.
    std::function<void()> dismissAlert;

    // The volume that the application runs from.
    bool volumeIsReadOnly = false;
    SMAppServiceStatus loginItemStatus = SMAppServiceStatusNotRegistered;
    // What registering leads to.
    SMAppServiceStatus statusAfterRegistering = SMAppServiceStatusEnabled;
    // The description of the error that registering and unregistering end in.
    std::optional<std::string> loginItemRefusal;
};

[[nodiscard]] World& world();
// A 1512 x 982 screen, nothing in the menu bar, nothing recorded. Also forgets what has been
// counted.
void resetWorld();

// Writes one line to the journal, unless the stand-ins are at work themselves.
void record(const std::string& line);
// The journal's lines that begin with the prefix.
[[nodiscard]] std::vector<std::string> recorded(std::string_view prefix);

// While one lives, nothing is recorded: for what the stand-ins and tests do themselves.
class Unrecorded {
  public:
    Unrecorded();
    Unrecorded(const Unrecorded&) = delete;
    Unrecorded& operator=(const Unrecorded&) = delete;
    ~Unrecorded();
};

// Once, before the first test: replaces methods of GNUstep's classes so that they record.
void installRecording();
// Once, before anything else: gives blocks the behaviour of objects.
void installBlocks();

// A mouse button of that event type goes down in another application.
void clickElsewhere(NSEventType type);
// What the system says after the screens have changed.
void tellScreenChange();
// Lays the bar out again, after a test has changed its items.
void layOutMenuBar();
// Where a window of the menu bar is, in global coordinates; empty when there is none.
[[nodiscard]] std::optional<NSRect> menuBarFrame(std::uint32_t window);

// What has been made and not yet ended.
struct Counts {
    // With a layer, as every view of an element has.
    std::size_t views = 0;
    std::size_t windowControllers = 0;
    std::size_t statusItems = 0;
    std::size_t monitors = 0;
    std::size_t observers = 0;
    std::size_t timers = 0;
    std::size_t coreObjects = 0;
    std::size_t openLibraries = 0;

    bool operator==(const Counts&) const = default;
};
[[nodiscard]] Counts liveCounts();

} // namespace pelistra::testing::standins
