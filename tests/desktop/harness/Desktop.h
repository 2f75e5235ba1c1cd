#pragma once

#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/RealTrayPrograms.h"
#include "tests/desktop/harness/UserInput.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// A whole desktop: private X server, window manager, session bus, and on request our bar, our
// organiser and real tray programs, with a client that looks at it all and a hand that works it.
class Desktop {
public:
    using Size = PrivateDisplay::Options;

    Desktop() : Desktop(Size{}) {}
    explicit Desktop(Size size);
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    ~Desktop();

    [[nodiscard]] PrivateDisplay& display() { return display_; }
    [[nodiscard]] XClient& x() { return client_; }
    [[nodiscard]] UserInput& input() { return input_; }

    // Programs that know both ways show their icon as a window, unless the bar is to take those of
    // the session bus, too.
    enum class Icons : std::uint8_t { Windows, All };
    BarUnderTest& startBar(std::vector<std::string> options = {}, Icons icons = Icons::Windows);
    // With onboarding done, unless it has been started on this desktop before.
    OrganiserUnderTest&
    startOrganiser(const std::vector<std::string>& options = {},
                   OrganiserUnderTest::WaitForItems wait = OrganiserUnderTest::WaitForItems::Yes);
    // Starts it and waits for its icon on the bar; throws std::runtime_error when none comes.
    ChildProcess& startProgram(const std::string& program);
    // These throw std::logic_error or std::out_of_range for what has not been started.
    [[nodiscard]] BarUnderTest& bar();
    [[nodiscard]] OrganiserUnderTest& organiser();
    [[nodiscard]] ChildProcess& program(const std::string& name);
    void endOrganiser() { organiser_.reset(); }
    // Asks one of them to end, and kills it when it does not.
    void endProgram(const std::string& name);
    void endPrograms();

    struct Item {
        xcb_window_t window = XCB_WINDOW_NONE;
        std::string className;
        WindowFrame frame;

        bool operator==(const Item&) const = default;
    };
    // What the bar holds, left to right.
    [[nodiscard]] std::vector<Item> items();
    // Foreign items left of the divider, and right of it.
    [[nodiscard]] std::vector<Item> hiddenSection();
    [[nodiscard]] std::vector<Item> visibleSection();
    // WM_CLASS classes of items(), left to right; our own two by their autosave names.
    [[nodiscard]] std::vector<std::string> order();
    [[nodiscard]] std::optional<Item> item(const std::string& className);

    // Every item of the hidden section lies left of the screen and is still mapped.
    [[nodiscard]] bool hiddenSectionIsOffScreen();
    // Every item of the bar lies on the screen and is mapped.
    [[nodiscard]] bool everythingIsOnScreen();
    [[nodiscard]] bool waitUntilCollapsed(std::chrono::milliseconds bound = patience);
    [[nodiscard]] bool waitUntilExpanded(std::chrono::milliseconds bound = patience);

    // Clicks the arrow where it is now; false when it is not on the bar.
    [[nodiscard]] bool clickControl(UserInput::Button button = UserInput::Button::Left,
                                    const UserInput::Modifiers& modifiers = {});
    // Moves an item by Super-drag so that its middle comes to `x`; false when it is not there.
    [[nodiscard]] bool dragItem(const std::string& className, int x,
                                const UserInput::Modifiers& modifiers = {keys::super});
    // Puts an item between the divider and the arrow.
    [[nodiscard]] bool dragIntoVisibleSection(const std::string& className);

    // On a Virtual server: gives the only output a mode of that size, at most the size the display
    // was started with; throws std::runtime_error when the server refuses.
    void setScreenSize(int width, int height);
    // On a Nested server: turns the screen to the left, and back.
    void turnScreen(bool left);
    // On a server with Outputs: switches the second one on right of the first, which stays the
    // primary one, and off. Throw std::runtime_error when the server refuses, as all of these do.
    void connectOutput(int width, int height);
    void disconnectOutput();
    // Divides the screen into monitors side by side; the first is the primary one. Their widths
    // must add up to the screen's.
    void setMonitors(const std::vector<int>& widths);
    // Takes away what setMonitors() has made, that many.
    void clearMonitors(std::size_t count);

    // The organiser's windows among those that the window manager looks after.
    [[nodiscard]] std::vector<xcb_window_t> organiserWindows();

private:
    [[nodiscard]] std::unique_ptr<ChildProcess>
    startXrandr(const std::vector<std::string>& arguments);
    [[nodiscard]] bool tryXrandr(const std::vector<std::string>& arguments);
    void runXrandr(const std::vector<std::string>& arguments);

    struct RunningProgram {
        std::string name;
        std::unique_ptr<ChildProcess> process;
    };

    PrivateDisplay display_;
    XClient client_;
    UserInput input_{client_};
    std::unique_ptr<BarUnderTest> bar_;
    std::unique_ptr<OrganiserUnderTest> organiser_;
    std::vector<RunningProgram> programs_;
};

void PrintTo(const Desktop::Item& item, std::ostream* stream);

} // namespace pelistra::testing
