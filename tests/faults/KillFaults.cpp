#include "tests/faults/Check.h"
#include "tests/faults/Suite.h"

#include <csignal>

namespace pelistra::testing {

namespace {

constexpr const char* program = "parcellite";

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

Fault killProgram(Situation situation) {
    return {.name = std::string("kill -9 a tray program, ") + nameOf(situation),
            .isInShortForm = situation == Situation::Revealed,
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                bench.killProgram(program);
                bench.restartProgram(program);
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
        faults.push_back(killProgram(situation));
        faults.push_back(killWindowManager(situation));
    }
    return faults;
}

std::vector<std::string> endServer() {
    Bench bench;
    bench.bringInto(Situation::Collapsed);
    bench.desktop().display().killServer();
    std::vector<std::string> complaints;
    for (ChildProcess* process :
         {&bench.desktop().bar().process(), &bench.desktop().organiser().process()}) {
        const auto end = process->waitForExit();
        if (!end) {
            complaints.push_back(process->name() + " goes on without an X server");
        } else if (!end->status) {
            complaints.push_back(process->name() + " crashes: " + process->output());
        }
        const std::string report = reportIn(process->output());
        if (!report.empty()) {
            complaints.push_back(report);
        }
    }
    return complaints;
}

} // namespace pelistra::testing
