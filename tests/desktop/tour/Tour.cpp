#include "tests/desktop/tour/Tour.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <csignal>
#include <exception>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace pelistra::testing {

namespace {

constexpr int longestPictureName = 48;
// Of a desktop's screen.
constexpr int pointsWide = 1280;
constexpr int pointsHigh = 800;
constexpr int plainDpi = 96;

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

std::filesystem::path settingsFile(const PrivateDisplay& display) {
    return display.folder() / "xsettingsd.conf";
}

// What a desktop environment would tell its programs.
void writeDesktopSettings(const PrivateDisplay& display, bool isDark) {
    std::ofstream(settingsFile(display))
        << "Net/ThemeName \"" << (isDark ? "Adwaita-dark" : "Adwaita") << "\"\n"
        << "Net/IconThemeName \"Adwaita\"\n";
}

void runToItsEnd(PrivateDisplay& display, const std::vector<std::string>& command) {
    const auto program = display.start(command);
    if (program->waitForExit() != ExitStatus{.status = 0}) {
        throw std::runtime_error(command.front() + " failed: " + program->output());
    }
}

// Compositors ask for the picture of the root by name.
void paintRoot(XClient& client, std::uint32_t colour) {
    xcb_connection_t* x = client.get();
    const xcb_pixmap_t pixmap = client.connection().newId();
    xcb_create_pixmap(x, client.connection().screen().root_depth, pixmap, client.root(), 1, 1);
    const xcb_gcontext_t context = client.connection().newId();
    xcb_create_gc(x, context, pixmap, XCB_GC_FOREGROUND, &colour);
    const xcb_rectangle_t all{.x = 0, .y = 0, .width = 1, .height = 1};
    xcb_poly_fill_rectangle(x, pixmap, context, 1, &all);
    xcb_change_window_attributes(x, client.root(), XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(x, 0, client.root(), 0, 0, 0, 0);
    x11::setWords(client.connection(), client.root(), client.atom("_XROOTPMAP_ID"), XCB_ATOM_PIXMAP,
                  std::array{pixmap});
    client.sync();
}

// Waits until two looks at the screen, a moment apart, see the same.
void letTheScreenSettle(XClient& client) {
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
    for (const auto& entry : std::filesystem::recursive_directory_iterator(pictures_)) {
        if (entry.path().extension() == ".png") {
            std::filesystem::remove(entry.path());
        }
    }
}

void Tour::beginDesktop(const Look& look) {
    row_.reset();
    tree_.reset();
    settings_.reset();
    desktop_.reset();
    desktop_ = std::make_unique<Desktop>(Desktop::Size{.width = pointsWide * look.scale,
                                                       .height = pointsHigh * look.scale,
                                                       .dpi = plainDpi * look.scale,
                                                       .compositor = look.compositor});
    PrivateDisplay& display = desktop_->display();
    paintRoot(desktop_->x(), look.isDark ? 0x1d2a38 : 0x34506b);
    if (look.scale != 1) {
        const std::filesystem::path resources = display.folder() / "resources";
        std::ofstream(resources) << "Xft.dpi: " << plainDpi * look.scale << "\n";
        runToItsEnd(display, {"xrdb", "-merge", "-nocpp", resources.string()});
    }
    writeDesktopSettings(display, look.isDark);
    settings_ = display.start({"xsettingsd", "-c", settingsFile(display).string()});
    if (!waitFor(
            [this] { return desktop_->x().selectionOwner("_XSETTINGS_S0") != XCB_WINDOW_NONE; })) {
        throw std::runtime_error("xsettingsd did not come up: " + settings_->output());
    }
    AccessibleTree::letProgramsSpeak(display);
    tree_ = std::make_unique<AccessibleTree>(display);
    row_ = std::make_unique<SecondRowUnderTest>(*desktop_, *tree_);
}

void Tour::setDark(bool isDark) {
    writeDesktopSettings(desktop_->display(), isDark);
    settings_->signal(SIGHUP);
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
    settledPicture(desktop_->x().rootFrame())
        .savePng(pictures_ / (numbered(steps_) + "-" + fileNameOf(action) + ".png"));
}

Picture Tour::settledPicture(const WindowFrame& area) {
    letTheScreenSettle(desktop_->x());
    return desktop_->x().capture(area);
}

std::filesystem::path Tour::folder(const std::string& name) const {
    std::filesystem::create_directories(pictures_ / name);
    return pictures_ / name;
}

Seen lookAtWindow(Desktop& desktop, const std::string& title, int width, int height) {
    XClient& x = desktop.x();
    const auto scale = static_cast<int>(desktop.bar().scale());
    const bool ok = waitFor([&] {
        const auto window = x.managedWindow(title);
        const auto frame = window ? x.frame(*window) : std::nullopt;
        return frame && frame->width == width * scale && frame->height == height * scale &&
               x.isViewable(*window);
    });
    const auto window = x.managedWindow(title);
    const auto frame = window ? x.frame(*window) : std::nullopt;
    return {.ok = ok, .text = "\"" + title + "\" " + (frame ? describe(*frame) : "absent")};
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

std::vector<PlacedProgram> placesOf(const std::vector<Desktop::Item>& items) {
    std::vector<PlacedProgram> places;
    for (const Desktop::Item& item : items) {
        places.emplace_back(item.className, item.frame);
    }
    return places;
}

std::string names(const std::vector<Desktop::Item>& items) {
    std::string text;
    for (const Desktop::Item& item : items) {
        text += (text.empty() ? "" : ", ") + item.className;
    }
    return text;
}

std::string describe(const PointerState& pointer) {
    return std::to_string(pointer.x) + "," + std::to_string(pointer.y);
}

} // namespace pelistra::testing
