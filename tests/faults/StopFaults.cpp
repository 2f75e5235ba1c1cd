#include "tests/faults/Stopped.h"
#include "tests/faults/Suite.h"

#include <algorithm>
#include <stdexcept>

namespace pelistra::testing {

namespace {

constexpr std::chrono::seconds stopTime{3};
// For a program that has nothing to wait for, on a busy machine, with sanitizers.
constexpr std::chrono::seconds promptly{10};

// The list of all icons comes, whoever else stands still.
void listItems(Bench& bench) {
    const std::size_t icons = bench.desktop().items().size();
    const auto process =
        bench.desktop().display().start({(builtPrograms() / "pelistra").string(), "--list-items"});
    const auto end = process->waitForExit(promptly);
    const std::string list = process->output();
    // One line is the heading.
    const auto lines = static_cast<std::size_t>(std::ranges::count(list, '\n'));
    if (end != ExitStatus{.status = 0} || lines != icons + 1) {
        throw std::runtime_error("the icons are not listed: " + list);
    }
}

void clickAround(Bench& bench) {
    constexpr int times = 5;
    for (int time = 0; time < times; ++time) {
        SecondRowUnderTest::letTheArrowRest();
        static_cast<void>(bench.desktop().clickControl());
    }
}

Fault programStops(const std::string& program, Situation situation) {
    return {.name = program + " stands still for a while, " + nameOf(situation),
            .isInShortForm = program == "nabi" && situation == Situation::Collapsed,
            .happen = [program, situation](Bench& bench) {
                bench.bringInto(situation);
                const Stopped stopped(bench.desktop().program(program).pid());
                letPass(stopTime);
                listItems(bench);
                if (!bench.calm()) {
                    throw std::runtime_error("the organiser depends on a stopped program");
                }
                // An open menu holds the pointer: nobody's click arrives until its program goes on.
                if (situation != Situation::Revealed) {
                    bench.bringInto(Situation::RowOpen);
                }
            }};
}

// Its menu is asked for while it cannot answer, and may come when it goes on.
Fault programStopsAndIsClicked(const std::string& program) {
    const std::string className = realTrayProgram(program).className;
    return {.name = program + " stands still and is clicked in the row",
            .isInShortForm = program == "qlipper",
            .happen = [program, className](Bench& bench) {
                bench.bringInto(Situation::RowOpen);
                const Stopped stopped(bench.desktop().program(program).pid());
                bench.desktop().input().click(centre(bench.rowIcon(className).frame),
                                              UserInput::Button::Right);
                if (!waitFor([&] { return !bench.row().isOpen(); })) {
                    throw std::runtime_error("the row waits for a stopped program");
                }
                letPass(stopTime);
                listItems(bench);
                if (!bench.calm()) {
                    throw std::runtime_error("the organiser waits for a stopped program");
                }
            }};
}

Fault barStops(Situation situation) {
    return {.name = std::string("the bar stands still for a while, ") + nameOf(situation),
            .isInShortForm = situation == Situation::RowOpen,
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                {
                    const Stopped stopped(bench.desktop().bar().process().pid());
                    listItems(bench);
                    clickAround(bench);
                }
                if (!bench.calm()) {
                    throw std::runtime_error("they do not find together again");
                }
            }};
}

Fault organiserStops(Situation situation) {
    return {.name = std::string("the organiser stands still for a while, ") + nameOf(situation),
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                {
                    const Stopped stopped(bench.desktop().organiser().process().pid());
                    listItems(bench);
                    clickAround(bench);
                    const auto second = bench.desktop().display().start(
                        {(builtPrograms() / "pelistra").string(), "--show-settings"});
                    if (second->waitForExit(promptly) != ExitStatus{.status = 1}) {
                        throw std::runtime_error("a second start waits for the first: " +
                                                 second->output());
                    }
                }
                if (!bench.calm()) {
                    throw std::runtime_error("it does not come back: " + bench.description());
                }
            }};
}

Fault windowManagerStops(Situation situation) {
    return {.name =
                std::string("the window manager stands still for a while, ") + nameOf(situation),
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                const Stopped stopped(bench.desktop().display().windowManagerPid());
                clickAround(bench);
                listItems(bench);
            }};
}

Fault serverStops(Situation situation) {
    return {.name = std::string("the X server stands still for a while, ") + nameOf(situation),
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                const Stopped stopped(bench.desktop().display().serverPid());
                letPass(stopTime);
            }};
}

} // namespace

std::vector<Fault> stopFaults() {
    std::vector<Fault> faults;
    for (const Situation situation :
         {Situation::Collapsed, Situation::RowOpen, Situation::Revealed}) {
        faults.push_back(programStops("nabi", situation));
        faults.push_back(organiserStops(situation));
        faults.push_back(barStops(situation));
        faults.push_back(windowManagerStops(situation));
        faults.push_back(serverStops(situation));
    }
    for (const char* program : {"volumeicon", "qlipper", "qmidinet"}) {
        faults.push_back(programStops(program, Situation::RowOpen));
        faults.push_back(programStopsAndIsClicked(program));
    }
    return faults;
}

} // namespace pelistra::testing
