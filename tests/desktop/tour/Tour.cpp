#include "tests/desktop/tour/Tour.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <exception>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <utility>

namespace pelistra::testing {

namespace {

constexpr int longestPictureName = 48;

std::string numbered(int step) {
    std::ostringstream text;
    text << std::setw(2) << std::setfill('0') << step;
    return text.str();
}

// "Left-click the arrow" as "left-click-the-arrow".
std::string fileNameOf(const std::string& action) {
    std::string name;
    for (const char character : action) {
        const auto byte = static_cast<unsigned char>(character);
        if (std::isalnum(byte) != 0) {
            name += static_cast<char>(std::tolower(byte));
        } else if (!name.empty() && name.back() != '-') {
            name += '-';
        }
    }
    name.resize(std::min<std::size_t>(name.size(), longestPictureName));
    while (name.ends_with('-')) {
        name.pop_back();
    }
    return name;
}

// Waits until two looks at the screen, a moment apart, see the same.
void letTheScreenSettle(const XClient& client) {
    constexpr std::chrono::milliseconds longest{1'500};
    constexpr std::chrono::milliseconds moment{120};
    Picture last = client.captureRoot();
    static_cast<void>(waitFor(
        [&] {
            static_cast<void>(staysTrue([] { return true; }, moment));
            const Picture before = std::exchange(last, client.captureRoot());
            return before == last;
        },
        longest));
}

} // namespace

Tour::Tour(std::filesystem::path pictures) : pictures_(std::move(pictures)) {
    std::filesystem::create_directories(pictures_);
    for (const auto& entry : std::filesystem::directory_iterator(pictures_)) {
        if (entry.path().extension() == ".png") {
            std::filesystem::remove(entry.path());
        }
    }
    const auto background = desktop_.display().start({"xsetroot", "-solid", "#34506b"});
    static_cast<void>(background->waitForExit());
}

void Tour::step(const std::string& action, const std::function<Seen()>& doAndLook) {
    ++steps_;
    Seen seen;
    try {
        seen = doAndLook();
        savePicture(action);
    } catch (const std::exception& failure) {
        seen = {.ok = false, .text = failure.what()};
    }
    failures_ += seen.ok ? 0 : 1;
    std::cout << (seen.ok ? "ok      " : "FAILED  ") << numbered(steps_) << "  " << action << ": "
              << seen.text << std::endl; // NOLINT(performance-avoid-endl): seen while it runs
}

bool Tour::finish() const {
    std::cout << steps_ - failures_ << " of " << steps_ << " steps ok; pictures in "
              << pictures_.string() << "\n";
    return failures_ == 0 && steps_ > 0;
}

void Tour::savePicture(const std::string& action) {
    letTheScreenSettle(desktop_.x());
    desktop_.x().captureRoot().savePng(pictures_ /
                                       (numbered(steps_) + "-" + fileNameOf(action) + ".png"));
}

std::string describe(const WindowFrame& frame) {
    return std::to_string(frame.width) + "x" + std::to_string(frame.height) + " at " +
           std::to_string(frame.x) + "," + std::to_string(frame.y);
}

std::string describe(const std::vector<Desktop::Item>& items) {
    if (items.empty()) {
        return "none";
    }
    return std::to_string(items.size()) + (items.size() == 1 ? " icon" : " icons") + " from x " +
           std::to_string(items.front().frame.x) + " to " +
           std::to_string(items.back().frame.right());
}

std::string names(const std::vector<Desktop::Item>& items) {
    std::string text;
    for (const Desktop::Item& item : items) {
        text += (text.empty() ? "" : ", ") + item.className;
    }
    return text;
}

} // namespace pelistra::testing
