#pragma once

#include "tests/desktop/harness/Desktop.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// What was seen after a step, read back from outside, and whether it is what should be.
struct Seen {
    bool ok = false;
    std::string text;
};

// Walks through steps on one desktop: prints a line for each and saves a picture of the screen.
class Tour {
public:
    // The folder is emptied of pictures of earlier tours, or made.
    explicit Tour(std::filesystem::path pictures);

    [[nodiscard]] Desktop& desktop() { return desktop_; }

    // Does and checks one thing. `action` says what is done; an exception counts as a failure.
    void step(const std::string& action, const std::function<Seen()>& doAndLook);

    // Prints the sum; true when every step was ok.
    [[nodiscard]] bool finish() const;

private:
    void savePicture(const std::string& action);

    std::filesystem::path pictures_;
    Desktop desktop_;
    int steps_ = 0;
    int failures_ = 0;
};

// The road of one use, in this order. Each leaves the desktop so that the next can go on.
void walkArranging(Tour& tour);
void walkSection(Tour& tour);
void walkWindows(Tour& tour);
void walkEndings(Tour& tour);

// "28x28 at 1224,0".
[[nodiscard]] std::string describe(const WindowFrame& frame);
// "6 icons from x -2560 to -2392", or "none".
[[nodiscard]] std::string describe(const std::vector<Desktop::Item>& items);
// The classes, left to right.
[[nodiscard]] std::string names(const std::vector<Desktop::Item>& items);

} // namespace pelistra::testing
