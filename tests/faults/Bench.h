#pragma once

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/SecondRowUnderTest.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace pelistra::testing {

// Where on the road of one use something goes wrong.
enum class Situation : std::uint8_t {
    Expanded,
    Collapsed,
    RowOpen,
    Revealed,
    SettingsOpen,
    OnboardingOpen,
};

inline constexpr std::array allSituations{Situation::Expanded,     Situation::Collapsed,
                                          Situation::RowOpen,      Situation::Revealed,
                                          Situation::SettingsOpen, Situation::OnboardingOpen};

[[nodiscard]] const char* nameOf(Situation situation);

// Throws std::runtime_error, which says what, unless that has been reached.
void demand(bool reached, const std::string& what);
// Time in which things happen elsewhere.
void letPass(std::chrono::milliseconds time);

// A desktop in use, on which things go wrong: bar, organiser and tray programs of several toolkits.
class Bench {
public:
    // Throws std::runtime_error when the desktop does not come up.
    explicit Bench(PrivateDisplay::Server server = PrivateDisplay::Server::Virtual);

    [[nodiscard]] PrivateDisplay::Server server() const { return server_; }

    [[nodiscard]] Desktop& desktop() { return desktop_; }
    [[nodiscard]] SecondRowUnderTest& row() { return row_; }

    // Goes there as a user would; throws std::runtime_error when it cannot be reached.
    void bringInto(Situation situation);
    // Goes to the open row and clicks the icon of that class there for its own menu; returns once
    // it stands on the screen.
    void reveal(const std::string& className);
    // The icon of that class in the open row; throws std::runtime_error when the row lacks it.
    [[nodiscard]] SecondRowUnderTest::Icon rowIcon(const std::string& className);
    // What a user sees when everything that was under way is over: expanded with all on the screen,
    // or collapsed; throws std::runtime_error when neither comes.
    void awaitRest(Situation situation);
    // Back to expanded, with no menu, row or window of the organiser open; false when that fails.
    [[nodiscard]] bool calm();

    void restartBar();
    void restartOrganiser();
    // Kills a tray program as a crash would, and starts it again.
    void killProgram(const std::string& program);
    void restartProgram(const std::string& program);

    // How things stand, for whoever looks for the reason of a failure.
    [[nodiscard]] std::string description();

    // The tray programs that run here, and the classes of their icons.
    [[nodiscard]] static const std::vector<std::string>& programs();
    [[nodiscard]] static std::vector<std::string> classNames();
    // The classes of the foreign icons, left to right.
    [[nodiscard]] std::vector<std::string> foreignOrder();
    // foreignOrder() as it was when the bench was set up.
    [[nodiscard]] const std::vector<std::string>& firstOrder() const { return firstOrder_; }

private:
    void collapse();
    void openRow();
    void clickForMenu(const std::string& className);
    void openMenu();
    void openWindow(const std::string& option, const char* title);
    [[nodiscard]] bool isCalm();

    PrivateDisplay::Server server_;
    Desktop desktop_;
    AccessibleTree tree_;
    SecondRowUnderTest row_{desktop_, tree_};
    std::vector<std::string> firstOrder_;
};

} // namespace pelistra::testing
