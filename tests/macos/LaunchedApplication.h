#pragma once

#include "app/AppDelegate.h"
#include "platform/macos/MacPlatform.h"
#include "tests/macos/standins/World.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace pelistra::macos {

// The whole organiser on the macOS front end: the core between a stand-in menu bar and the test.
// Every test needs a process of its own: the shared bridge keeps the platform that it was made
// with. Process ids and window numbers of the other applications' items are 100, 200, ...
class LaunchedApplication : public ::testing::Test {
  protected:
    static constexpr pid_t firstPid = 100;
    static constexpr pid_t secondPid = 200;
    static constexpr std::uint32_t firstWindow = 1001;
    static constexpr std::uint32_t secondWindow = 1002;
    // On a screen of 1512 points.
    static constexpr double collapsedLength = 3024;

    void SetUp() override;
    void TearDown() override;

    // Two items left of the divider, one between divider and control.
    static void fillMenuBar();
    static void setOnboardingCompleted(bool completed);
    static void setArguments(const std::vector<std::string>& switches);

    // Starts up, and lets the main queue run until the start-up check has been logged.
    void launch();
    void quit();

    // Launches beside a filled menu bar, and hides its section.
    void collapse();
    // collapse(), and opens the row.
    void openRow();
    // The element of the row whose tool tip begins with the text; nil when there is none.
    [[nodiscard]] static NSView* item(const std::string& tooltip);

    // A click on the arrow: button down and up through the window's own event handling.
    static void clickArrow(bool option = false);
    static void rightClickArrow();
    // Until a click on the arrow counts again.
    static void waitForLatch();

    [[nodiscard]] static double dividerLength();
    [[nodiscard]] static std::vector<std::string> messagesOf(const std::string& category);
    // The panel below the menu bar; nil before it was made.
    [[nodiscard]] static NSPanel* panel();
    [[nodiscard]] static bool panelIsVisible();
    [[nodiscard]] static NSWindow* windowTitled(NSString* title);

  private:
    std::unique_ptr<MacPlatform> platform_;
    std::unique_ptr<AppDelegate> delegate_;
};

// Every text that shows inside the view, in the order of the views.
[[nodiscard]] std::vector<std::string> textsIn(NSView* view);
// The first view of that class whose tool tip, title or accessibility label begins with the text.
[[nodiscard]] NSView* find(NSView* in, Class kind, const std::string& text);
// A mouse button goes down and up in the middle of the view.
void click(NSView* view, NSEventType down, NSEventType up, NSUInteger modifiers = 0);
// Writes what the window shows into a PNG file in the folder that PELISTRA_PICTURES names; does
// nothing without it.
void takePicture(NSWindow* window, const std::string& name);

} // namespace pelistra::macos
