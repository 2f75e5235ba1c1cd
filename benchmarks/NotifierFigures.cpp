#include "benchmarks/NotifierFigures.h"

#include "benchmarks/Product.h"
#include "tests/desktop/harness/NotifierClient.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <iostream>
#include <iterator>
#include <map>
#include <mutex>
#include <thread>
#include <utility>

namespace pelistra::testing {

namespace {

constexpr PrivateDisplay::Options screen{.width = 1920, .height = 1080};
constexpr int icons = 30;
constexpr int iconSide = 22;
constexpr int trayHeight = 40;
// A product that takes longer has lost anyway.
constexpr std::chrono::seconds longestWait{10};
constexpr std::chrono::milliseconds rest{700};
// GLib ends its idle threads after 15 seconds; what has ended is no longer counted.
constexpr std::chrono::seconds restForMemory{20};
constexpr std::chrono::seconds idleTime{10};
constexpr int changesInASecond = 10;

using Values = std::map<std::string, std::vector<double>>;

// Programs with icons on the session bus, which answer at once.
class Programs {
public:
    Programs() : thread_([this] { work(); }) {}
    Programs(const Programs&) = delete;
    Programs& operator=(const Programs&) = delete;
    ~Programs() {
        ends_ = true;
        thread_.join();
    }

    void add(const NotifierClient::Options& options) {
        post([this, options] { clients_.push_back(std::make_unique<NotifierClient>(options)); });
    }
    void changeLast(std::uint32_t argb) {
        post([this, argb] {
            clients_.back()->change(
                [argb](auto& options) {
                    options.pixmaps = {NotifierClient::plainPixmap(iconSide, argb)};
                },
                "NewIcon");
        });
    }

private:
    void post(std::function<void()> task) {
        const std::scoped_lock lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    void work() {
        while (!ends_) {
            std::vector<std::function<void()>> tasks;
            {
                const std::scoped_lock lock(mutex_);
                tasks.swap(tasks_);
            }
            for (const auto& task : tasks) {
                task();
            }
            for (const auto& client : clients_) {
                client->handleEvents();
            }
            std::this_thread::sleep_for(std::chrono::microseconds(500));
        }
        clients_.clear();
    }

    std::mutex mutex_;
    std::vector<std::function<void()>> tasks_;
    std::atomic<bool> ends_ = false;
    std::vector<std::unique_ptr<NotifierClient>> clients_;
    std::thread thread_;
};

// Every icon has a colour that nothing else on the screen has.
std::uint32_t colorOf(int index) {
    constexpr std::uint32_t base = 0xFF2010F0;
    constexpr std::uint32_t step = 0x060000;
    return base + static_cast<std::uint32_t>(index) * step;
}

NotifierClient::Options optionsOf(Desktop& desktop, int index) {
    NotifierClient::Options options;
    options.address = desktop.display().environment().at("DBUS_SESSION_BUS_ADDRESS");
    options.id = "icon" + std::to_string(index);
    options.title = options.id;
    options.menu = "/menu";
    options.entries = {{.id = 1, .label = "One"}, {.id = 2, .label = "Two"}};
    options.itemIsMenu = true;
    options.pixmaps = {NotifierClient::plainPixmap(iconSide, colorOf(index))};
    return options;
}

// Where that colour is on the screen; empty where it is not.
std::optional<RootPoint> find(const Picture& picture, std::uint32_t argb) {
    constexpr std::uint32_t colorBits = 0xFFFFFF;
    const std::uint32_t wanted = argb & colorBits;
    constexpr int inside = 5;
    for (int y = 0; y + inside < picture.height(); ++y) {
        for (int x = 0; x + inside < picture.width(); ++x) {
            if (picture.at(x, y) == wanted && picture.at(x + inside, y + inside) == wanted) {
                return RootPoint{.x = x + inside, .y = y + inside};
            }
        }
    }
    return std::nullopt;
}

Picture trayPicture(Desktop& desktop) {
    return desktop.x().capture({.x = 0, .y = 0, .width = screen.width, .height = trayHeight});
}

int shownIcons(Desktop& desktop) {
    const Picture picture = trayPicture(desktop);
    int count = 0;
    for (int index = 0; index < icons; ++index) {
        count += find(picture, colorOf(index)) ? 1 : 0;
    }
    return count;
}

template <class Condition>
std::optional<double> timeUntil(Condition condition) {
    const auto begin = Clock::now();
    while (!condition()) {
        if (Clock::now() - begin > longestWait) {
            return std::nullopt;
        }
        std::this_thread::yield();
    }
    return Milliseconds(Clock::now() - begin).count();
}

void showOneByOne(Desktop& desktop, Programs& programs, Values& values) {
    for (int index = 0; index < icons; ++index) {
        programs.add(optionsOf(desktop, index));
        const auto time =
            timeUntil([&] { return find(trayPicture(desktop), colorOf(index)).has_value(); });
        require(time.has_value(), "an icon is not shown");
        values["shown"].push_back(*time);
    }
}

// `after` the pointer has come to the icon.
void openMenus(Desktop& desktop, const Effort& effort, std::chrono::milliseconds after,
               const std::string& row, Values& values) {
    constexpr RootPoint outside{.x = 300, .y = 700};
    for (int round = 0; round < effort.starts; ++round) {
        desktop.input().moveTo(outside);
        std::this_thread::sleep_for(rest);
        const auto icon = find(trayPicture(desktop), colorOf(0));
        require(icon.has_value(), "the icon has gone");
        desktop.input().moveTo(*icon);
        std::this_thread::sleep_for(after);
        desktop.input().press(UserInput::Button::Right);
        desktop.input().release(UserInput::Button::Right);
        const auto time = timeUntil([&] { return !desktop.x().shownMenus().empty(); });
        require(time.has_value(), "no menu opens");
        values[row].push_back(*time);
        std::this_thread::sleep_for(rest);
        desktop.input().tapKey(keys::escape);
        require(waitFor([&] { return desktop.x().shownMenus().empty(); }), "the menu stays");
    }
    desktop.input().moveTo(outside);
}

void change(RunningProduct& running, Programs& programs, Values& values) {
    const double before = running.processorMilliseconds();
    const auto begin = Clock::now();
    for (int index = 0; index < changesInASecond * idleTime.count(); ++index) {
        programs.changeLast(colorOf(icons - 1) ^ static_cast<std::uint32_t>(index % 2));
        std::this_thread::sleep_until(
            begin + (index + 1) * std::chrono::milliseconds(1000 / changesInASecond));
    }
    const double passed = Milliseconds(Clock::now() - begin).count();
    constexpr double percent = 100;
    values["changing"].push_back((running.processorMilliseconds() - before) / passed * percent);
    programs.changeLast(colorOf(icons - 1));
}

void measure(const Product& product, const Effort& effort, Values& values) {
    Desktop desktop(screen);
    using Purpose = RunningProduct::Purpose;
    auto running = std::make_unique<RunningProduct>(desktop, product, Purpose::Notifiers);
    require(waitForWatcher(desktop.display().environment().at("DBUS_SESSION_BUS_ADDRESS")),
            "there is no watcher");
    std::this_thread::sleep_for(restForMemory);
    const double without = running->memory().own;
    Programs programs;
    showOneByOne(desktop, programs, values);
    std::this_thread::sleep_for(restForMemory);
    const double with = running->memory().own;
    values["memory"].push_back(with);
    values["more memory"].push_back(with - without);
    const double wakeUps = running->wakeUps();
    std::this_thread::sleep_for(idleTime);
    values["wake-ups"].push_back(running->wakeUps() - wakeUps);
    change(*running, programs, values);
    constexpr std::chrono::milliseconds approach{300};
    openMenus(desktop, effort, approach, "menu", values);
    running.reset();
    running = std::make_unique<RunningProduct>(desktop, product, Purpose::Notifiers);
    constexpr std::chrono::seconds longestReturn{5};
    static_cast<void>(waitFor([&] { return shownIcons(desktop) == icons; }, longestReturn));
    values["left"].push_back(shownIcons(desktop));
}

struct RowName {
    std::string key;
    std::string what;
    std::string unit;
    std::optional<Limit> limit;
};

const std::vector<RowName>& rowNames() {
    static const std::vector<RowName> rows{
        {.key = "shown",
         .what = "icon on the screen after its program registers",
         .unit = "ms",
         .limit = atMost(200)},
        {.key = "menu", .what = "menu open after the click", .unit = "ms", .limit = atMost(100)},
        {.key = "more memory",
         .what = "own memory that 30 icons need",
         .unit = "MiB",
         .limit = atMost(1.5)},
        {.key = "memory", .what = "own memory with 30 icons", .unit = "MiB", .limit = {}},
        {.key = "wake-ups",
         .what = "wake-ups in 10 s with 30 icons",
         .unit = "",
         .limit = atMost(0)},
        {.key = "changing",
         .what = "share of a core for an icon that changes 10 times a second",
         .unit = "%",
         .limit = below(1)},
        {.key = "left",
         .what = "of 30 icons, there again after the tray was killed and started",
         .unit = "",
         .limit = atLeast(icons)},
    };
    return rows;
}

} // namespace

Section notifierFigures(const Effort& effort) {
    Values values;
    measure(products().front(), effort, values);
    Section section{.title = "Icons on the session bus", .figures = {}};
    for (const RowName& row : rowNames()) {
        section.figures.push_back({.what = row.what,
                                   .spread = spreadOf(values.at(row.key)),
                                   .unit = row.unit,
                                   .limit = row.limit});
    }
    return section;
}

Comparison notifierRivals(const Effort& effort) {
    Comparison comparison{
        .title = "Icons on the session bus beside other trays", .products = {}, .rows = {}};
    for (const RowName& row : rowNames()) {
        comparison.rows.push_back({.what = row.what, .unit = row.unit, .values = {}});
    }
    for (const Product& product : products()) {
        if (!product.isInstalled() || !product.showsNotifiers()) {
            continue;
        }
        Values values;
        try {
            measure(product, effort, values);
        } catch (const std::exception& failure) {
            std::cerr << "  " << product.name << ": " << failure.what() << "\n";
        }
        comparison.products.push_back(product.fullName());
        for (std::size_t row = 0; row < rowNames().size(); ++row) {
            const auto found = values.find(rowNames()[row].key);
            comparison.rows[row].values.push_back(
                found == values.end() ? std::nullopt : std::optional(spreadOf(found->second)));
        }
    }
    return comparison;
}

} // namespace pelistra::testing
