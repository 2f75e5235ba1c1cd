#pragma once

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/SecondRowUnderTest.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pelistra::testing {

// How many steps the introduction has.
inline constexpr int introductionSteps = 4;

// What was seen after a step, read back from outside, and whether it is what should be.
struct Seen {
    bool ok = false;
    std::string text;
};

// Walks through steps on a desktop: prints a line for each and saves a picture of the screen.
class Tour {
public:
    // How a desktop looks: device pixels per point, the look that its settings ask
    // for, and what composites it.
    struct Look {
        int scale = 1;
        bool isDark = false;
        Compositor compositor = Compositor::None;
    };

    // The folder is emptied of pictures of earlier tours, or made.
    explicit Tour(std::filesystem::path pictures);

    // Ends the desktop of the last steps and begins a new one, with nothing on it but a background
    // and settings. The first one must be begun as well.
    void beginDesktop(const Look& look);
    // Changes what the running programs are told about dark and light.
    void setDark(bool isDark);

    [[nodiscard]] Desktop& desktop() { return *desktop_; }
    [[nodiscard]] AccessibleTree& tree() { return *tree_; }
    [[nodiscard]] SecondRowUnderTest& row() { return *row_; }

    // Does and checks one thing. `action` says what is done; an exception counts as a failure.
    void step(const std::string& action, const std::function<Seen()>& doAndLook);

    // The folder of the pictures that are not of a step, by their own names; made when first asked
    // for.
    [[nodiscard]] std::filesystem::path folder(const std::string& name) const;
    // What a part of the screen shows once it has come to rest.
    [[nodiscard]] Picture settledPicture(const WindowFrame& area);

    // Prints the sum; true when every step was ok.
    [[nodiscard]] bool finish() const;

private:
    void savePicture(const std::string& action);

    std::filesystem::path pictures_;
    std::unique_ptr<Desktop> desktop_;
    std::unique_ptr<ChildProcess> settings_;
    std::unique_ptr<AccessibleTree> tree_;
    std::unique_ptr<SecondRowUnderTest> row_;
    int steps_ = 0;
    int failures_ = 0;
};

// The road of one use, in this order. Each leaves the desktop so that the next can go on.
void walkArranging(Tour& tour);
void walkDiscovery(Tour& tour);
void walkRow(Tour& tour);
void walkMenus(Tour& tour);
// On desktops of their own.
void walkFirstUse(Tour& tour);
void walkNotifiers(Tour& tour);
void walkLooks(Tour& tour);
void walkCompositor(Tour& tour);

// Whether a window of that title shows with a content of that size in points.
[[nodiscard]] Seen lookAtWindow(Desktop& desktop, const std::string& title, int width, int height);

// "28x28 at 1224,0".
[[nodiscard]] std::string describe(const WindowFrame& frame);
// "6 icons from x -2560 to -2392", or "none".
[[nodiscard]] std::string describe(const std::vector<Desktop::Item>& items);
// A program's class and the frame of its icon; some make a new window when the bar is started
// again.
using PlacedProgram = std::pair<std::string, WindowFrame>;
[[nodiscard]] std::vector<PlacedProgram> placesOf(const std::vector<Desktop::Item>& items);
// The classes, left to right.
[[nodiscard]] std::string names(const std::vector<Desktop::Item>& items);
// "640,400".
[[nodiscard]] std::string describe(const PointerState& pointer);

} // namespace pelistra::testing
