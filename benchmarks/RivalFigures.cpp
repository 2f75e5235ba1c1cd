#include "benchmarks/RivalFigures.h"

#include "benchmarks/ManyIcons.h"
#include "benchmarks/Product.h"
#include "platform/linux/icons/TrayReader.h"
#include "tests/desktop/harness/Connect.h"

#include <algorithm>
#include <future>
#include <iostream>
#include <iterator>
#include <map>
#include <thread>
#include <utility>

namespace pelistra::testing {

namespace {

constexpr PrivateDisplay::Options screen{.width = 1920, .height = 1080};
constexpr std::size_t icons = 50;
// A product that takes longer has lost anyway.
constexpr std::chrono::seconds longestWait{20};
constexpr std::chrono::milliseconds rest{700};
// What was needed for a moment only is given back by then, where a product does so.
constexpr std::chrono::seconds restForMemory{4};

// The values of one product for each row.
class Values {
public:
    void add(const std::string& row, double value) { values_[row].push_back(value); }
    [[nodiscard]] std::optional<Spread> spread(const std::string& row) const {
        const auto found = values_.find(row);
        return found == values_.end() ? std::nullopt : std::optional(spreadOf(found->second));
    }
    void merge(const Values& other) {
        for (const auto& [row, values] : other.values_) {
            std::ranges::copy(values, std::back_inserter(values_[row]));
        }
    }

private:
    std::map<std::string, std::vector<double>> values_;
};

bool isSeen(XClient& x, xcb_window_t window, int screenWidth) {
    const auto frame = x.frame(window);
    return frame && frame->right() > 0 && frame->x < screenWidth && x.isViewable(window);
}

// One icon after another: none changes back while the others are waited for.
template <class Condition>
bool waitForEach(const std::vector<xcb_window_t>& windows, Condition condition) {
    const auto end = Clock::now() + longestWait;
    for (const xcb_window_t window : windows) {
        while (!condition(window)) {
            if (Clock::now() > end) {
                return false;
            }
            std::this_thread::yield();
        }
    }
    return true;
}

// In the tray, whoever shows it: the icons that are not the organiser's own.
std::size_t thirdPartyIcons(linux::TrayReader& reader) {
    const auto view = reader.read();
    return view ? std::ranges::count_if(
                      view->icons, [](const auto& icon) { return icon.className != "Pelistra"; })
                : 0;
}

// The time from the start of the product until the icons of programs that run already are docked.
void dockPrograms(const Product& product, const Effort& effort, Values& values) {
    Desktop desktop(screen);
    std::vector<std::unique_ptr<ChildProcess>> programs;
    for (const RealTrayProgram& program : realTrayPrograms()) {
        // It shows no icon any more when there was no tray at its start.
        if (program.program != "copyq") {
            programs.push_back(startTrayProgram(desktop.display(), program));
        }
    }
    std::this_thread::sleep_for(std::chrono::seconds(2));
    const auto connection = connect(desktop.display());
    linux::TrayReader reader(*connection);
    constexpr int fewer = 4;
    for (int round = 0; round < std::max(3, effort.starts / fewer); ++round) {
        const auto begin = Clock::now();
        const RunningProduct running(desktop, product, RunningProduct::Purpose::Start);
        if (!waitFor([&] { return thirdPartyIcons(reader) >= programs.size(); }, longestWait)) {
            std::cerr << "  " << product.name << " docks " << thirdPartyIcons(reader) << " of "
                      << programs.size() << " programs\n";
            return;
        }
        values.add("programs", Milliseconds(Clock::now() - begin).count());
        std::this_thread::sleep_for(rest);
    }
}

// The cost of many icons that ask for a dock at once.
void dockMany(const Product& product, std::size_t count, const std::string& name, Values& values) {
    Desktop desktop(screen);
    RunningProduct running(desktop, product);
    std::this_thread::sleep_for(rest);
    const double processorBefore = running.processorMilliseconds();
    const auto begin = Clock::now();
    const ManyIcons many(desktop.display().name(), count);
    if (!waitForEach(many.windows(), [&](xcb_window_t window) {
            return desktop.x().isViewable(window) &&
                   desktop.x().parent(window) != desktop.x().root();
        })) {
        return;
    }
    values.add("dock " + name, Milliseconds(Clock::now() - begin).count());
    std::this_thread::sleep_for(rest);
    values.add("processor " + name, running.processorMilliseconds() - processorBefore);
    std::this_thread::sleep_for(restForMemory);
    const Memory memory = running.memory();
    values.add("memory " + name, memory.proportional);
    values.add("own memory " + name, memory.own);
}

// Where the part of a panel ends that holds the icons, hidden ones too, in containers of their own.
int endOfTray(Desktop& desktop, xcb_window_t icon) {
    const xcb_window_t tray = desktop.x().parent(desktop.x().parent(icon));
    return desktop.x().frame(tray).value_or(WindowFrame{}).right();
}

// Also icons that are hidden.
void waitUntilDocked(Desktop& desktop, const std::vector<xcb_window_t>& windows) {
    require(waitForEach(windows,
                        [&](xcb_window_t window) {
                            return desktop.x().parent(window) != desktop.x().root();
                        }),
            "not every icon is docked");
    std::this_thread::sleep_for(std::chrono::seconds(2));
}

double timeToToggle(Desktop& desktop, RunningProduct& running,
                    const std::vector<xcb_window_t>& windows, bool toHide) {
    running.press(toHide, endOfTray(desktop, windows.front()));
    const auto begin = Clock::now();
    running.release(toHide);
    require(waitForEach(windows,
                        [&](xcb_window_t window) {
                            return isSeen(desktop.x(), window, screen.width) != toHide;
                        }),
            toHide ? "icons stay on the screen" : "icons do not come back");
    const double time = Milliseconds(Clock::now() - begin).count();
    std::this_thread::sleep_for(rest);
    return time;
}

void hideAndShow(const Product& product, const Effort& effort, Values& values) {
    if (!product.canHide()) {
        return;
    }
    Desktop desktop(screen);
    RunningProduct running(desktop, product, RunningProduct::Purpose::Hide);
    const ManyIcons many(desktop.display().name(), icons);
    waitUntilDocked(desktop, many.windows());
    if (!product.isOurs()) {
        // It begins hidden.
        static_cast<void>(timeToToggle(desktop, running, many.windows(), false));
    }
    for (int round = 0; round < effort.rounds; ++round) {
        values.add("hide", timeToToggle(desktop, running, many.windows(), true));
        values.add("show", timeToToggle(desktop, running, many.windows(), false));
    }
    static_cast<void>(timeToToggle(desktop, running, many.windows(), true));
    std::this_thread::sleep_for(restForMemory);
    const Memory memory = running.memory();
    values.add("memory hidden", memory.proportional);
    values.add("own memory hidden", memory.own);
}

void idle(const Effort& effort, const std::string& how, RunningProduct& running, Values& values) {
    const double wakeUps = running.wakeUps();
    const double processor = running.processorMilliseconds();
    std::this_thread::sleep_for(effort.idleTime);
    values.add("wake-ups " + how, running.wakeUps() - wakeUps);
    values.add("idle processor " + how, running.processorMilliseconds() - processor);
}

// With the third-party programs and quiet icons up to 50.
void idleOn(const Product& product, const Effort& effort, Values& values) {
    using Purpose = RunningProduct::Purpose;
    Desktop desktop(screen);
    RunningProduct running(desktop, product, product.canHide() ? Purpose::Hide : Purpose::Show);
    std::vector<std::unique_ptr<ChildProcess>> programs;
    for (const RealTrayProgram& program : realTrayPrograms()) {
        programs.push_back(startTrayProgram(desktop.display(), program));
    }
    const ManyIcons many(desktop.display().name(), icons - programs.size());
    waitUntilDocked(desktop, many.windows());
    // GLib ends its idle threads after 15 seconds; what has ended is no longer counted.
    constexpr std::chrono::seconds start{20};
    std::this_thread::sleep_for(start);
    if (product.canHide() && !product.isOurs()) {
        static_cast<void>(timeToToggle(desktop, running, many.windows(), false));
        std::this_thread::sleep_for(std::chrono::seconds(2));
    }
    idle(effort, "shown", running, values);
    if (product.canHide()) {
        static_cast<void>(timeToToggle(desktop, running, many.windows(), true));
        std::this_thread::sleep_for(std::chrono::seconds(2));
        idle(effort, "hidden", running, values);
    }
}

// A product that fails in one row is still compared in the others.
template <class Measure>
void attempt(const Product& product, const std::string& what, Measure measure) {
    try {
        measure();
    } catch (const std::exception& failure) {
        std::cerr << "  " << product.name << ", " << what << ": " << failure.what() << "\n";
    }
}

Values measureInTurn(const Product& product, const Effort& effort) {
    Values values;
    attempt(product, "docking of programs", [&] { dockPrograms(product, effort, values); });
    constexpr int fewer = 2;
    const int rounds = std::max(1, effort.starts / fewer);
    for (int round = 0; round < rounds; ++round) {
        attempt(product, "docking", [&] { dockMany(product, icons, "50", values); });
        for (const int count : effort.iconCounts) {
            attempt(product, "growing", [&] {
                dockMany(product, static_cast<std::size_t>(count), std::to_string(count), values);
            });
        }
    }
    attempt(product, "hiding", [&] { hideAndShow(product, effort, values); });
    return values;
}

struct RowName {
    std::string key;
    std::string what;
    std::string unit;
};

std::vector<RowName> rowNames(const Effort& effort) {
    const std::string seconds = std::to_string(effort.idleTime.count()) + " s";
    std::vector<RowName> rows{
        {.key = "programs", .what = "start to 6 third-party icons docked", .unit = "ms"},
        {.key = "dock 50", .what = "50 icons docked", .unit = "ms"},
        {.key = "hide", .what = "50 icons hidden after the click", .unit = "ms"},
        {.key = "show", .what = "50 icons back after the click", .unit = "ms"},
        {.key = "wake-ups shown", .what = "wake-ups in " + seconds + ", shown", .unit = ""},
        {.key = "idle processor shown",
         .what = "processor time in " + seconds + ", shown",
         .unit = "ms"},
        {.key = "wake-ups hidden", .what = "wake-ups in " + seconds + ", hidden", .unit = ""},
        {.key = "idle processor hidden",
         .what = "processor time in " + seconds + ", hidden",
         .unit = "ms"},
        {.key = "memory 50", .what = "proportional memory with 50 icons, shown", .unit = "MiB"},
        {.key = "own memory 50", .what = "own memory with 50 icons, shown", .unit = "MiB"},
        {.key = "memory hidden",
         .what = "proportional memory with 50 icons, hidden",
         .unit = "MiB"},
        {.key = "own memory hidden", .what = "own memory with 50 icons, hidden", .unit = "MiB"},
    };
    for (const int count : effort.iconCounts) {
        const std::string number = std::to_string(count);
        rows.push_back({.key = "dock " + number, .what = number + " icons docked", .unit = "ms"});
        rows.push_back({.key = "processor " + number,
                        .what = "processor time for " + number + " icons",
                        .unit = "ms"});
        rows.push_back({.key = "memory " + number,
                        .what = "proportional memory with " + number + " icons",
                        .unit = "MiB"});
        rows.push_back({.key = "own memory " + number,
                        .what = "own memory with " + number + " icons",
                        .unit = "MiB"});
    }
    return rows;
}

} // namespace

Comparison rivalFigures(const Effort& effort) {
    std::vector<Product> present;
    std::ranges::copy_if(products(), std::back_inserter(present), [](const Product& product) {
        return product.showsWindows() && product.isInstalled();
    });
    Comparison comparison{.title = "Beside other trays", .products = {}, .rows = {}};
    std::vector<Values> values;
    for (const Product& product : present) {
        comparison.products.push_back(product.fullName());
        values.push_back(measureInTurn(product, effort));
    }
    // Idling takes long and disturbs nobody, so all do it at the same time, each on its display.
    std::vector<std::future<Values>> idling;
    idling.reserve(present.size());
    for (const Product& product : present) {
        idling.push_back(std::async(std::launch::async, [&product, &effort] {
            Values found;
            attempt(product, "idling", [&] { idleOn(product, effort, found); });
            return found;
        }));
    }
    for (std::size_t index = 0; index < idling.size(); ++index) {
        values[index].merge(idling[index].get());
    }
    for (const RowName& row : rowNames(effort)) {
        ComparedRow compared{.what = row.what, .unit = row.unit, .values = {}};
        for (const Values& found : values) {
            compared.values.push_back(found.spread(row.key));
        }
        comparison.rows.push_back(std::move(compared));
    }
    return comparison;
}

} // namespace pelistra::testing
