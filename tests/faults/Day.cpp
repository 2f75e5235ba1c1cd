#include "tests/faults/Day.h"

#include "tests/desktop/harness/NotifierClient.h"
#include "tests/faults/Bench.h"
#include "tests/faults/Check.h"
#include "tests/faults/Holdings.h"
#include "tests/faults/Stopped.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <stdexcept>

#include <systemd/sd-bus.h>

namespace pelistra::testing {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::minutes untilCounting{1};
// After the last menu the bar keeps the program that shows menus for a while.
constexpr std::chrono::seconds untilQuiet{30};
// The organiser gives memory back two seconds after a window has gone.
constexpr std::chrono::seconds untilMemoryIsBack{3};
constexpr std::chrono::milliseconds standstill{600};
constexpr std::chrono::milliseconds menuTime{600};
constexpr long mostMoreMemory = 1024;
constexpr std::size_t restlessPrograms = 3;
#if defined(__SANITIZE_ADDRESS__)
constexpr bool memoryCounts = false;
#elif defined(__has_feature)
constexpr bool memoryCounts = !__has_feature(address_sanitizer);
#else
constexpr bool memoryCounts = true;
#endif

class Day {
public:
    Day()
        : bench_(PrivateDisplay::Server::Outputs),
          bus_(connectToBus(display().environment().at("DBUS_SESSION_BUS_ADDRESS"))) {
        // Its programs have their windows now and keep them; those that come are on the bus, too.
        desktop().startBar({}, Desktop::Icons::All);
        demand(bench_.calm() && bench_.foreignOrder() == bench_.firstOrder(),
               "the icons do not move to the other bar");
        writeTheme();
        themes_ = display().start({"xsettingsd", "-c", themeFile()});
    }

    // One day; throws std::runtime_error when something breaks.
    void live() {
        programsCome();
        menusOfTheBar();
        rowAndItsMenus();
        monitorComesAndGoes();
        standstills();
        windows();
        themeChanges();
        programsGo();
        demand(bench_.calm(), "the section cannot be expanded");
        ++days_;
    }

    // Looks at everything, then waits until what was needed only for a while has been given back;
    // returns what is wrong.
    [[nodiscard]] std::vector<std::string> rest() {
        auto complaints = complaintsOf(bench_);
        // What the row needed goes back, too, once a window has gone.
        bench_.bringInto(Situation::SettingsOpen);
        if (!bench_.calm()) {
            complaints.emplace_back("the settings window stays");
        }
        if (menusSeen_ < days_) {
            complaints.emplace_back("menus do not open");
        }
        for (const Holder& holder : holders()) {
            if (!waitFor([&] { return holdings(holder.process).at("children") == 0; },
                         untilQuiet)) {
                complaints.push_back("the " + holder.name + " keeps helpers");
            }
        }
        letPass(untilMemoryIsBack);
        return complaints;
    }

    struct Holder {
        std::string name;
        pid_t process = 0;
    };
    [[nodiscard]] std::array<Holder, 2> holders() {
        return {{{.name = "bar", .process = desktop().bar().process().pid()},
                 {.name = "organiser", .process = desktop().organiser().process().pid()}}};
    }
    [[nodiscard]] Holdings holdings(pid_t process) {
        return holdingsOf(process, desktop().x(), *bus_);
    }
    // How many have been lived.
    [[nodiscard]] int days() const { return days_; }

private:
    [[nodiscard]] Desktop& desktop() { return bench_.desktop(); }
    [[nodiscard]] PrivateDisplay& display() { return desktop().display(); }
    [[nodiscard]] std::string themeFile() { return (display().folder() / "xsettingsd").string(); }

    void programsCome() {
        const auto own = std::filesystem::read_symlink("/proc/self/exe").string();
        for (std::size_t number = 0; number < restlessPrograms; ++number) {
            restless_.push_back(
                display().start({own, "--restless", "Restless" + std::to_string(number)}));
        }
        demand(waitFor([this] {
                   return desktop().items().size() ==
                          bench_.firstOrder().size() + 2 + 2 * restlessPrograms;
               }),
               "the programs do not show their icons: " + restless_.front()->output());
        bench_.restartProgram("pnmixer");
    }

    // Some crash, some end.
    void programsGo() {
        for (const auto& program : restless_) {
            program == restless_.front() ? program->kill()
                                         : static_cast<void>(program->terminate());
        }
        restless_.clear();
        demand(
            waitFor([this] { return desktop().items().size() == bench_.firstOrder().size() + 2; }),
            "icons of programs that are gone stay");
    }

    // One button on every icon, the other one on the next day.
    void menusOfTheBar() {
        demand(bench_.calm(), "the section cannot be expanded");
        int turn = days_;
        for (const Desktop::Item& item : desktop().hiddenSection()) {
            // It moves while others change.
            const auto place = desktop().x().frame(item.window);
            demand(place.has_value(), "an icon has gone: " + item.className);
            desktop().input().click(centre(*place), ++turn % 2 == 0 ? UserInput::Button::Left
                                                                    : UserInput::Button::Right);
            menusSeen_ += waitFor([this] { return !desktop().x().shownMenus().empty(); }, menuTime);
            desktop().input().tapKey(keys::escape);
            letPass(menuTime / 4);
        }
    }

    // On a busy machine a menu that comes late takes a click. Then a user tries again; and this
    // says so.
    template <class Act>
    void again(Act act) {
        try {
            act();
        } catch (const std::runtime_error& failure) {
            std::cout << "a second try on day " << days_ + 1 << ", since " << failure.what()
                      << "\n";
            act();
        }
    }

    void rowAndItsMenus() {
        again([this] { bench_.reveal(days_ % 2 == 0 ? "pelistra-faults" : "Nabi"); });
    }

    void monitorComesAndGoes() {
        const Situation situation = days_ % 2 == 0 ? Situation::RowOpen : Situation::Collapsed;
        again([&] { bench_.bringInto(situation); });
        desktop().connectOutput(1024, 768);
        bench_.awaitRest(situation);
        desktop().disconnectOutput();
        bench_.awaitRest(situation);
    }

    void standstills() {
        again([&] { bench_.bringInto(Situation::Collapsed); });
        for (const pid_t process :
             {restless_[1]->pid(), holders()[0].process, holders()[1].process}) {
            const Stopped stopped(process);
            static_cast<void>(desktop().clickControl());
            letPass(standstill);
        }
    }

    void windows() {
        bench_.bringInto(Situation::SettingsOpen);
        bench_.bringInto(Situation::OnboardingOpen);
    }

    void writeTheme() {
        std::ofstream(themeFile())
            << "Net/ThemeName \"" << (dark_ ? "Adwaita-dark" : "Adwaita") << "\"\n";
    }

    void themeChanges() {
        for (const Situation situation : {Situation::Expanded, Situation::RowOpen}) {
            again([&] { bench_.bringInto(situation); });
            const auto bar = desktop().x().frame(desktop().x().barWindow());
            demand(bar.has_value(), "no bar");
            const auto look = [&] {
                return desktop()
                    .x()
                    .capture({.x = bar->midX(), .y = bar->y + 1, .width = 1, .height = 1})
                    .at(0, 0);
            };
            const auto before = look();
            dark_ = !dark_;
            writeTheme();
            // One that comes while it is not waiting is lost to it.
            demand(waitFor([&] {
                       themes_->signal(SIGHUP);
                       return look() != before;
                   }),
                   "the bar does not follow the theme");
        }
    }

    struct BusDeleter {
        void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    };

    Bench bench_;
    std::unique_ptr<sd_bus, BusDeleter> bus_;
    std::unique_ptr<ChildProcess> themes_;
    std::vector<std::unique_ptr<ChildProcess>> restless_;
    bool dark_ = false;
    int days_ = 0;
    int menusSeen_ = 0;
};

// What one of the two held when counting began, and after how many days that was.
struct Beginning {
    Holdings holdings;
    long memory = 0;
    int days = 0;
};
using Beginnings = std::map<std::string, Beginning>;

long memoryOf(pid_t process) {
    return ownMemory(process).value_or(0);
}

bool rests(Day& day) {
    const auto complaints = day.rest();
    for (const std::string& complaint : complaints) {
        std::cout << "FAILED    " << complaint << "\n";
    }
    return complaints.empty();
}

Beginnings beginCounting(Day& day) {
    Beginnings beginnings;
    for (const Day::Holder& holder : day.holders()) {
        Beginning& beginning = beginnings[holder.name];
        beginning = {.holdings = day.holdings(holder.process),
                     .memory = memoryOf(holder.process),
                     .days = day.days()};
        std::cout << "counting from here, " << holder.name << ":";
        for (const auto& [kind, count] : beginning.holdings) {
            std::cout << " " << kind << " " << count << ";";
        }
        std::cout << "\n";
    }
    return beginnings;
}

bool judge(Day& day, const Beginnings& beginnings) {
    bool held = true;
    for (const Day::Holder& holder : day.holders()) {
        Beginning beginning = beginnings.at(holder.name);
        // From version 6.5 on Qt opens the font of the cursors for a new screen, one a day here,
        // and what it does so with (libxcb-cursor 0.1.5) never closes it.
        beginning.holdings["FONT"] += day.days() - beginning.days;
        std::vector<std::string> more;
        static_cast<void>(waitFor(
            [&] {
                more = growth(beginning.holdings, day.holdings(holder.process));
                return more.empty();
            },
            untilQuiet));
        for (const std::string& what : more) {
            std::cout << "FAILED    the " << holder.name << " holds more: " << what << "\n";
        }
        const long memory = memoryOf(holder.process) - beginning.memory;
        const bool memoryHeld = !memoryCounts || memory <= mostMoreMemory;
        std::cout << (memoryHeld ? "" : "FAILED    ") << "the " << holder.name << " needs "
                  << memory << " KiB more than " << beginning.memory << " KiB"
                  << (memoryCounts ? "" : ", which sanitizers distort and nobody judges") << "\n";
        held = held && more.empty() && memoryHeld;
    }
    return held;
}

} // namespace

bool liveDays(std::chrono::minutes length) {
    const auto begin = Clock::now();
    const auto elapsed = [&] {
        return std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin);
    };
    Day day;
    Beginnings beginnings;
    bool held = true;
    for (int number = 1; number <= 2 || elapsed() < length; ++number) {
        day.live();
        std::cout << "day " << number << ", " << elapsed().count() << " s:";
        for (const Day::Holder& holder : day.holders()) {
            std::cout << " " << holder.name << " " << memoryOf(holder.process) << " KiB";
        }
        std::cout << std::endl; // NOLINT(performance-avoid-endl): seen while it runs
        if (beginnings.empty() &&
            elapsed() >= std::min<std::chrono::seconds>(length, untilCounting)) {
            held = rests(day);
            beginnings = beginCounting(day);
        }
    }
    held = rests(day) && held;
    return judge(day, beginnings) && held;
}

} // namespace pelistra::testing
