#include "tests/desktop/harness/Desktop.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <ostream>
#include <stdexcept>

namespace pelistra::testing {

namespace {

constexpr std::chrono::seconds programEndTime{1};

PrivateDisplay::Options withSession(PrivateDisplay::Options options) {
    options.windowManager = true;
    options.sessionBus = true;
    return options;
}

bool isOurs(const Desktop::Item& item) {
    return item.className == OrganiserUnderTest::controlName ||
           item.className == OrganiserUnderTest::dividerName;
}

} // namespace

void PrintTo(const Desktop::Item& item, std::ostream* stream) {
    *stream << item.className << " ";
    PrintTo(item.frame, stream);
}

Desktop::Desktop(Size size) : display_(withSession(size)), client_(display_.name()) {
    OrganiserUnderTest::completeOnboarding(display_);
}

Desktop::~Desktop() {
    endPrograms();
}

void Desktop::endPrograms() {
    for (const RunningProgram& program : programs_) {
        program.process->signal(SIGTERM);
    }
    for (const RunningProgram& program : programs_) {
        program.process->terminate(programEndTime);
    }
    programs_.clear();
}

BarUnderTest& Desktop::startBar(std::vector<std::string> options, Icons icons) {
    if (icons == Icons::Windows) {
        options.emplace_back("--no-status-notifier");
    }
    bar_.reset();
    bar_ = std::make_unique<BarUnderTest>(display_, client_, options);
    return *bar_;
}

OrganiserUnderTest& Desktop::startOrganiser(const std::vector<std::string>& options,
                                            OrganiserUnderTest::WaitForItems wait) {
    organiser_.reset();
    organiser_ = std::make_unique<OrganiserUnderTest>(display_, client_, options, wait);
    return *organiser_;
}

ChildProcess& Desktop::startProgram(const std::string& program) {
    const RealTrayProgram& known = realTrayProgram(program);
    programs_.push_back({.name = program, .process = startTrayProgram(display_, known)});
    ChildProcess& process = *programs_.back().process;
    if (!waitFor([&] { return item(known.className).has_value(); })) {
        throw std::runtime_error(program + " shows no icon: " + process.output());
    }
    return process;
}

BarUnderTest& Desktop::bar() {
    if (bar_ == nullptr) {
        throw std::logic_error("no menu bar was started");
    }
    return *bar_;
}

OrganiserUnderTest& Desktop::organiser() {
    if (organiser_ == nullptr) {
        throw std::logic_error("no organiser was started");
    }
    return *organiser_;
}

ChildProcess& Desktop::program(const std::string& name) {
    const auto found = std::ranges::find(programs_, name, &RunningProgram::name);
    if (found == programs_.end()) {
        throw std::out_of_range(name + " was not started");
    }
    return *found->process;
}

void Desktop::endProgram(const std::string& name) {
    program(name).terminate(programEndTime);
    std::erase_if(programs_, [&](const RunningProgram& running) { return running.name == name; });
}

std::vector<Desktop::Item> Desktop::items() {
    std::vector<Item> result;
    for (const xcb_window_t window : client_.barItems()) {
        if (const auto frame = client_.frame(window)) {
            const auto [instance, className] = client_.windowClass(window);
            result.push_back({.window = window,
                              .className = className == "Pelistra" ? instance : className,
                              .frame = *frame});
        }
    }
    return result;
}

std::vector<Desktop::Item> Desktop::hiddenSection() {
    const std::vector<Item> all = items();
    const auto divider = std::ranges::find(all, OrganiserUnderTest::dividerName, &Item::className);
    std::vector<Item> section(all.begin(), divider == all.end() ? all.begin() : divider);
    std::erase_if(section, isOurs);
    return section;
}

std::vector<Desktop::Item> Desktop::visibleSection() {
    const std::vector<Item> all = items();
    std::vector<Item> section(
        std::ranges::find(all, OrganiserUnderTest::dividerName, &Item::className), all.end());
    std::erase_if(section, isOurs);
    return section;
}

std::vector<std::string> Desktop::order() {
    std::vector<std::string> names;
    for (const Item& item : items()) {
        names.push_back(item.className);
    }
    return names;
}

std::optional<Desktop::Item> Desktop::item(const std::string& className) {
    const std::vector<Item> all = items();
    const auto found = std::ranges::find(all, className, &Item::className);
    return found == all.end() ? std::nullopt : std::optional(*found);
}

bool Desktop::hiddenSectionIsOffScreen() {
    const std::vector<Item> section = hiddenSection();
    return !section.empty() && std::ranges::all_of(section, [this](const Item& item) {
        return item.frame.right() <= 0 && client_.isViewable(item.window);
    });
}

bool Desktop::everythingIsOnScreen() {
    const int width = client_.rootFrame().width;
    const std::vector<Item> all = items();
    return !all.empty() && std::ranges::all_of(all, [&](const Item& item) {
        return item.frame.x >= 0 && item.frame.right() <= width && client_.isViewable(item.window);
    });
}

bool Desktop::waitUntilCollapsed(std::chrono::milliseconds bound) {
    return waitFor([this] { return organiser().isCollapsed() && hiddenSectionIsOffScreen(); },
                   bound);
}

bool Desktop::waitUntilExpanded(std::chrono::milliseconds bound) {
    return waitFor([this] { return !organiser().isCollapsed() && everythingIsOnScreen(); }, bound);
}

bool Desktop::clickControl(UserInput::Button button, const UserInput::Modifiers& modifiers) {
    const auto frame = organiser().controlFrame();
    if (!frame) {
        return false;
    }
    input_.click(centre(*frame), button, modifiers);
    return true;
}

bool Desktop::dragItem(const std::string& className, int x, const UserInput::Modifiers& modifiers) {
    const auto dragged = item(className);
    if (!dragged) {
        return false;
    }
    input_.drag(centre(dragged->frame), {.x = x, .y = dragged->frame.midY()}, modifiers);
    return true;
}

bool Desktop::dragIntoVisibleSection(const std::string& className) {
    const auto control = organiser().controlFrame();
    // Just left of the arrow's middle the item changes places with nothing but the divider.
    return control && dragItem(className, control->x - 2) && waitFor([&] {
               return std::ranges::count(visibleSection(), className, &Item::className) == 1;
           });
}

void Desktop::setScreenSize(int width, int height) {
    const std::string name = std::to_string(width) + "x" + std::to_string(height);
    const std::vector<std::string> timing{std::to_string(width),      std::to_string(width + 1),
                                          std::to_string(width + 2),  std::to_string(width + 3),
                                          std::to_string(height),     std::to_string(height + 1),
                                          std::to_string(height + 2), std::to_string(height + 3)};
    const std::vector<std::string> useMode{"--output", "screen", "--mode", name};
    // The server keeps the modes of earlier calls.
    if (!tryXrandr(useMode)) {
        std::vector<std::string> newMode{"--newmode", name, "50"};
        newMode.insert(newMode.end(), timing.begin(), timing.end());
        runXrandr(newMode);
        runXrandr({"--addmode", "screen", name});
        runXrandr(useMode);
    }
    const bool changed = waitFor(
        [&] { return client_.rootFrame() == WindowFrame{.width = width, .height = height}; });
    if (!changed) {
        throw std::runtime_error("the screen has not become " + name);
    }
}

void Desktop::turnScreen(bool left) {
    const WindowFrame before = client_.rootFrame();
    runXrandr({"--output", "default", "--rotate", left ? "left" : "normal"});
    const WindowFrame turned{.width = before.height, .height = before.width};
    if (!waitFor([&] { return client_.rootFrame() == turned; })) {
        throw std::runtime_error("the screen does not turn");
    }
}

void Desktop::connectOutput(int width, int height) {
    const WindowFrame before = client_.rootFrame();
    const std::string mode = std::to_string(width) + "x" + std::to_string(height);
    runXrandr({"--output", "DUMMY0", "--primary"});
    runXrandr({"--addmode", "DUMMY1", mode});
    runXrandr({"--output", "DUMMY1", "--mode", mode, "--right-of", "DUMMY0"});
    if (!waitFor([&] { return client_.rootFrame().width == before.width + width; })) {
        throw std::runtime_error("the second output does not come on");
    }
}

void Desktop::disconnectOutput() {
    runXrandr({"--output", "DUMMY1", "--off"});
}

void Desktop::setMonitors(const std::vector<int>& widths) {
    const int height = client_.rootFrame().height;
    int x = 0;
    for (std::size_t index = 0; index < widths.size(); ++index) {
        const std::string geometry = std::to_string(widths[index]) + "/300x" +
                                     std::to_string(height) + "/200+" + std::to_string(x) + "+0";
        // A star marks the primary monitor; the output may belong to one monitor only.
        runXrandr({"--setmonitor", (index == 0 ? "*Monitor" : "Monitor") + std::to_string(index),
                   geometry, index == 0 ? "screen" : "none"});
        x += widths[index];
    }
}

void Desktop::clearMonitors(std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
        runXrandr({"--delmonitor", "Monitor" + std::to_string(index)});
    }
}

std::vector<xcb_window_t> Desktop::organiserWindows() {
    std::vector<xcb_window_t> windows = client_.managedWindows();
    const auto process = static_cast<std::uint32_t>(organiser().process().pid());
    std::erase_if(windows,
                  [&](xcb_window_t window) { return client_.claimedProcess(window) != process; });
    return windows;
}

std::unique_ptr<ChildProcess> Desktop::startXrandr(const std::vector<std::string>& arguments) {
    std::vector<std::string> command{"xrandr"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return display_.start(command);
}

bool Desktop::tryXrandr(const std::vector<std::string>& arguments) {
    return startXrandr(arguments)->waitForExit() == ExitStatus{.status = 0};
}

void Desktop::runXrandr(const std::vector<std::string>& arguments) {
    const auto process = startXrandr(arguments);
    if (process->waitForExit() != ExitStatus{.status = 0}) {
        throw std::runtime_error("xrandr " + arguments.front() + " failed: " + process->output());
    }
}

} // namespace pelistra::testing
