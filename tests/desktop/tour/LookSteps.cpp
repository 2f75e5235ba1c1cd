#include "tests/desktop/harness/WindowsUnderTest.h"
#include "tests/desktop/tour/Tour.h"

#include <algorithm>
#include <filesystem>

namespace pelistra::testing {

namespace {

// Between black and white.
constexpr double middleGrey = 127;

double brightness(const Picture& picture) {
    double sum = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const std::uint32_t pixel = picture.at(x, y);
            sum += ((pixel >> 16U) & 0xffU) + ((pixel >> 8U) & 0xffU) + (pixel & 0xffU);
        }
    }
    constexpr double colours = 3;
    return sum / (colours * std::max(1, picture.width()) * std::max(1, picture.height()));
}

// Everything that users see, on one desktop in its light and its dark look.
class Looks {
public:
    Looks(Tour& tour, int scale)
        : tour_(tour), desktop_(tour.desktop()), windows_(tour.desktop(), tour.tree()),
          scale_(scale) {}

    void start();
    void walk(bool isDark);
    // Pictures for people who read about the program, under names that stay.
    void saveForReaders();

private:
    [[nodiscard]] std::string look() const {
        return std::to_string(scale_) + "x, " + (isDark_ ? "dark" : "light");
    }
    // A picture by its own name; says whether it has something on it and fits the look.
    Seen keep(const std::string& name, const Picture& picture);
    Seen onboardingStep(int step);
    Seen settings();
    Seen row();
    // A window without what the window manager puts around it.
    Picture windowPicture(const std::string& title);
    [[nodiscard]] WindowFrame rightEndOfBar() const;
    [[nodiscard]] WindowFrame aroundTheRow();
    void closeWindows();
    [[nodiscard]] bool changeLook(bool isDark);

    Tour& tour_;
    Desktop& desktop_;
    WindowsUnderTest windows_;
    int scale_;
    bool isDark_ = false;
};

void Looks::start() {
    std::filesystem::remove(desktop_.display().configFolder() / "pelistra" / "defaults");
    desktop_.startBar();
    for (const RealTrayProgram& program : realTrayPrograms()) {
        desktop_.startProgram(program.program);
    }
    desktop_.startOrganiser();
    for (const char* className : {"Pnmixer", "Volumeicon"}) {
        static_cast<void>(desktop_.dragIntoVisibleSection(className));
    }
}

void Looks::walk(bool isDark) {
    isDark_ = isDark;
    if (isDark) {
        tour_.step("Ask for a dark desktop (" + std::to_string(scale_) + "x)", [&] {
            return Seen{.ok = changeLook(isDark), .text = "bar and settings have changed"};
        });
    }
    for (int step = 1; step <= introductionSteps; ++step) {
        tour_.step("Step " + std::to_string(step) + " of the guide (" + look() + ")",
                   [&] { return onboardingStep(step); });
    }
    tour_.step("The settings (" + look() + ")", [&] { return settings(); });
    tour_.step("The second row (" + look() + ")", [&] { return row(); });
}

bool Looks::changeLook(bool isDark) {
    if (!desktop_.clickControl(UserInput::Button::Right) ||
        !lookAtWindow(desktop_, settingsTitle, settingsWidth, settingsHeight).ok) {
        return false;
    }
    tour_.setDark(isDark);
    const auto window = desktop_.x().managedWindow(settingsTitle);
    const WindowFrame bar{.width = desktop_.x().rootFrame().width / 4, .height = 28 * scale_};
    return waitFor([&] {
        const auto fits = [&](const Picture& picture) {
            return (brightness(picture) < middleGrey) == isDark;
        };
        return fits(desktop_.x().capture(*desktop_.x().frame(*window))) &&
               fits(desktop_.x().capture(bar));
    });
}

Seen Looks::keep(const std::string& name, const Picture& picture) {
    constexpr std::size_t leastColours = 20;
    const std::string file =
        name + "-" + std::to_string(scale_) + "x-" + (isDark_ ? "dark" : "light") + ".png";
    picture.savePng(tour_.folder("looks") / file);
    const double grey = brightness(picture);
    return {.ok = picture.colours() >= leastColours && (grey < middleGrey) == isDark_,
            .text = "looks/" + file + ", " + std::to_string(picture.width()) + "x" +
                    std::to_string(picture.height()) + ", mean brightness " +
                    std::to_string(static_cast<int>(grey)) + " of 255"};
}

Seen Looks::onboardingStep(int step) {
    const bool isFirst = step == 1;
    if (isFirst && isDark_ && !windows_.click("重新查看使用引导")) {
        return {.ok = false, .text = "no button for the guide"};
    }
    if (!isFirst && !windows_.click("继续")) {
        return {.ok = false, .text = "no forward button"};
    }
    const Seen window = lookAtWindow(desktop_, onboardingTitle, onboardingWidth, onboardingHeight);
    const std::string caption = "第 " + std::to_string(step) + " 步";
    const bool isThere = waitFor([&] { return windows_.says(caption); });
    Seen seen = keep("onboarding-" + std::to_string(step), windowPicture(onboardingTitle));
    seen.ok = seen.ok && window.ok && isThere;
    return seen;
}

void Looks::closeWindows() {
    for (const xcb_window_t window : desktop_.organiserWindows()) {
        desktop_.x().requestClose(window);
    }
    static_cast<void>(waitFor([&] { return desktop_.organiserWindows().empty(); }));
}

Seen Looks::settings() {
    if (!windows_.click("开始使用 Pelistra") ||
        !waitFor([&] { return !desktop_.x().managedWindow(onboardingTitle); })) {
        return {.ok = false, .text = "the guide does not end"};
    }
    SecondRowUnderTest::letTheArrowRest();
    const bool clicked = desktop_.clickControl(UserInput::Button::Right);
    const Seen window = lookAtWindow(desktop_, settingsTitle, settingsWidth, settingsHeight);
    Seen seen = keep("settings", windowPicture(settingsTitle));
    seen.ok = seen.ok && clicked && window.ok;
    closeWindows();
    return seen;
}

Seen Looks::row() {
    SecondRowUnderTest::letTheArrowRest();
    if (!desktop_.organiser().isCollapsed() &&
        !(desktop_.clickControl() && desktop_.waitUntilCollapsed())) {
        return {.ok = false, .text = "no collapse"};
    }
    if (!tour_.row().open()) {
        return {.ok = false, .text = "no row"};
    }
    desktop_.input().moveTo(centre(desktop_.x().rootFrame()));
    const WindowFrame frame = *tour_.row().frame();
    Seen seen = keep("second-row", tour_.settledPicture(frame));
    if (!isDark_ && scale_ > 1) {
        desktop_.input().moveTo(centre(desktop_.x().rootFrame()));
        tour_.settledPicture(aroundTheRow()).savePng(tour_.folder("readers") / "second-row.png");
    }
    SecondRowUnderTest::letTheArrowRest();
    const bool closed = desktop_.clickControl() && waitFor([&] { return !tour_.row().isOpen(); });
    SecondRowUnderTest::letTheArrowRest();
    const bool expanded =
        desktop_.clickControl(UserInput::Button::Left, {keys::alt}) && desktop_.waitUntilExpanded();
    seen.ok = seen.ok && closed && expanded;
    return seen;
}

Picture Looks::windowPicture(const std::string& title) {
    const auto window = desktop_.x().managedWindow(title);
    const auto frame = window ? desktop_.x().frame(*window) : std::nullopt;
    return frame ? tour_.settledPicture(*frame) : Picture();
}

WindowFrame Looks::rightEndOfBar() const {
    constexpr int width = 480;
    constexpr int height = 28;
    return {.x = desktop_.x().rootFrame().right() - (width * scale_),
            .y = 0,
            .width = width * scale_,
            .height = height * scale_};
}

WindowFrame Looks::aroundTheRow() {
    constexpr int below = 14;
    WindowFrame area = rightEndOfBar();
    const WindowFrame row = *tour_.row().frame();
    area.height = row.y + row.height + (below * scale_);
    return area;
}

void Looks::saveForReaders() {
    tour_.step("Take the pictures for readers", [&]() -> Seen {
        const std::filesystem::path folder = tour_.folder("readers");
        desktop_.input().moveTo(centre(desktop_.x().rootFrame()));
        const Picture expanded = tour_.settledPicture(rightEndOfBar());
        SecondRowUnderTest::letTheArrowRest();
        const bool collapsed = desktop_.clickControl() && desktop_.waitUntilCollapsed();
        desktop_.input().moveTo(centre(desktop_.x().rootFrame()));
        const Picture hidden = tour_.settledPicture(rightEndOfBar());
        constexpr int gap = 10;
        expanded.above(hidden, gap * scale_, 0xffffff).savePng(folder / "menubar.png");
        SecondRowUnderTest::letTheArrowRest();
        const bool back = desktop_.clickControl(UserInput::Button::Left, {keys::alt}) &&
                          desktop_.waitUntilExpanded();
        for (const auto& [from, to] : {std::pair{"settings-2x-light.png", "settings.png"},
                                       std::pair{"onboarding-2-2x-light.png", "onboarding.png"}}) {
            std::filesystem::copy_file(tour_.folder("looks") / from, folder / to,
                                       std::filesystem::copy_options::overwrite_existing);
        }
        const bool all = std::ranges::all_of(
            std::array{"menubar.png", "second-row.png", "settings.png", "onboarding.png"},
            [&](const char* name) { return std::filesystem::exists(folder / name); });
        return {.ok = collapsed && back && all && expanded != hidden,
                .text = "in " + folder.string()};
    });
}

} // namespace

void walkLooks(Tour& tour) {
    for (const int scale : {1, 2}) {
        tour.beginDesktop({.scale = scale});
        Looks looks(tour, scale);
        tour.step("Begin a desktop at " + std::to_string(scale) + "x", [&] {
            looks.start();
            return lookAtWindow(tour.desktop(), onboardingTitle, onboardingWidth, onboardingHeight);
        });
        looks.walk(false);
        if (scale > 1) {
            looks.saveForReaders();
        }
        looks.walk(true);
    }
}

} // namespace pelistra::testing
