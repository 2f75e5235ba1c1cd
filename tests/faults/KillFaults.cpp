#include "tests/faults/Suite.h"

#include <csignal>
#include <stdexcept>

namespace pelistra::testing {

namespace {

Fault killOrganiser(Situation situation) {
    return {.name = std::string("kill -9 the organiser, ") + nameOf(situation),
            .isInShortForm = situation == Situation::Collapsed || situation == Situation::Revealed,
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                bench.desktop().organiser().process().kill();
                bench.restartOrganiser();
            }};
}

Fault killBar(Situation situation) {
    return {.name = std::string("kill -9 the bar, ") + nameOf(situation),
            .isInShortForm = situation == Situation::Expanded || situation == Situation::RowOpen,
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                bench.desktop().bar().process().kill();
                bench.restartBar();
            }};
}

Fault killBoth(Situation situation) {
    return {.name = std::string("kill -9 bar and organiser, ") + nameOf(situation),
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                bench.desktop().organiser().process().kill();
                bench.desktop().bar().process().kill();
                bench.restartBar();
                bench.restartOrganiser();
            }};
}

// An orderly end leaves every icon on the screen.
Fault endOrganiser(Situation situation) {
    return {.name = std::string("the organiser is asked to end, ") + nameOf(situation),
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                ChildProcess& process = bench.desktop().organiser().process();
                if (process.terminate() != ExitStatus{.status = 0}) {
                    throw std::runtime_error("it does not end in order: " + process.output());
                }
                if (!waitFor([&] { return bench.desktop().everythingIsOnScreen(); })) {
                    throw std::runtime_error("it leaves icons hidden");
                }
                bench.restartOrganiser();
            }};
}

Fault endBar(Situation situation) {
    return {.name = std::string("the bar is asked to end, ") + nameOf(situation),
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                ChildProcess& process = bench.desktop().bar().process();
                if (process.terminate() != ExitStatus{.status = 0}) {
                    throw std::runtime_error("it does not end in order: " + process.output());
                }
                bench.restartBar();
            }};
}

// With the row's icon or the icon itself clicked, it is that program's own that dies.
Fault killProgram(const std::string& program, Situation situation) {
    const std::string className = realTrayProgram(program).className;
    return {.name = "kill -9 " + program + ", " + nameOf(situation),
            .isInShortForm = program == "nabi" && situation == Situation::Revealed,
            .happen = [program, className, situation](Bench& bench) {
                if (situation == Situation::Revealed && program != "nabi") {
                    bench.reveal(className);
                } else {
                    bench.bringInto(situation);
                }
                bench.killProgram(program);
                bench.restartProgram(program);
            }};
}

// At moments spread over the way from the click in the row to the menu.
Fault killWhileRevealing(const std::string& program) {
    const std::string className = realTrayProgram(program).className;
    return {.name = "kill -9 " + program + " while its icon is being revealed",
            .happen = [program, className](Bench& bench) {
                for (const int delay : {0, 30, 80, 150, 250, 400}) {
                    bench.bringInto(Situation::RowOpen);
                    bench.desktop().input().click(centre(bench.rowIcon(className).frame),
                                                  UserInput::Button::Right);
                    static_cast<void>(
                        staysTrue([] { return true; }, std::chrono::milliseconds(delay)));
                    bench.killProgram(program);
                    bench.restartProgram(program);
                }
            }};
}

Fault killWindowManager(Situation situation) {
    return {.name = std::string("kill -9 the window manager, ") + nameOf(situation),
            .isInShortForm = situation == Situation::Collapsed,
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                bench.desktop().display().restartWindowManager();
            }};
}

} // namespace

std::vector<Fault> killFaults() {
    std::vector<Fault> faults;
    for (const Situation situation : allSituations) {
        faults.push_back(killOrganiser(situation));
        faults.push_back(killBar(situation));
        faults.push_back(killBoth(situation));
        faults.push_back(endOrganiser(situation));
        faults.push_back(endBar(situation));
        faults.push_back(killWindowManager(situation));
    }
    for (const std::string& program : Bench::programs()) {
        for (const Situation situation :
             {Situation::Expanded, Situation::Collapsed, Situation::RowOpen, Situation::Revealed}) {
            faults.push_back(killProgram(program, situation));
        }
    }
    for (const char* program : {"nabi", "pnmixer", "qmidinet"}) {
        faults.push_back(killWhileRevealing(program));
    }
    return faults;
}

} // namespace pelistra::testing
