#pragma once

#include "benchmarks/Measuring.h"
#include "tests/desktop/harness/Picture.h"
#include "tests/desktop/harness/XClient.h"

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace pelistra::testing {

// Is told by the X server (DAMAGE) of everything that is drawn on the screen, and so knows when it
// was, without asking over and over.
class ScreenWatch {
public:
    // Throws std::runtime_error when the display has no such extension.
    explicit ScreenWatch(const std::string& display);

    // Forgets what has been drawn so far.
    void forget();

    // When the screen came to look like `wanted` inside `area`: all but a few of its pixels, so
    // that a blinking cursor does not count. Empty when it did not within `bound`.
    [[nodiscard]] std::optional<Clock::time_point>
    whenLikeThis(const WindowFrame& area, const Picture& wanted, std::chrono::milliseconds bound);

    // When the screen came to look inside `area` as it does once nothing is drawn there any more
    // for `calm`. Empty when nothing was drawn, or it did not come to rest within `bound`.
    [[nodiscard]] std::optional<Clock::time_point> whenFinal(const WindowFrame& area,
                                                             std::chrono::milliseconds calm,
                                                             std::chrono::milliseconds bound);

    // How often something was drawn inside `area` during that time; drawings that follow one
    // another without a pause make one frame.
    [[nodiscard]] std::size_t framesWithin(const WindowFrame& area, std::chrono::milliseconds time);

private:
    // Whether anything was drawn in the area among the events that have come.
    [[nodiscard]] bool drain(const WindowFrame& area);
    void waitForEvent(std::chrono::milliseconds bound);
    [[nodiscard]] bool looksLike(const WindowFrame& area, const Picture& wanted);

    XClient x_;
    int firstEvent_ = 0;
};

} // namespace pelistra::testing
