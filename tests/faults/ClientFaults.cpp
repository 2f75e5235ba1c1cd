#include "tests/desktop/harness/TrayClient.h"
#include "tests/faults/Suite.h"

#include <filesystem>
#include <memory>
#include <stdexcept>

namespace pelistra::testing {

namespace {

// An X server serves 256 clients at most.
constexpr int batch = 100;
constexpr int batches = 10;

void dockAndDie(Bench& bench, int rounds) {
    for (int round = 0; round < rounds; ++round) {
        std::vector<std::unique_ptr<TrayClient>> clients;
        for (int number = 0; number < batch; ++number) {
            const std::string name = "Short" + std::to_string(number);
            clients.push_back(std::make_unique<TrayClient>(bench.desktop().display().name(),
                                                           TrayClient::Options{.name = name}));
            clients.back()->requestDock();
            // Some die while they are being docked, the others with the rest.
            if (number % 3 == 0) {
                clients.back()->die();
            }
        }
    }
    const std::size_t remaining = bench.firstOrder().size() + 2;
    if (!waitFor([&] { return bench.desktop().items().size() == remaining; })) {
        throw std::runtime_error("icons of dead programs stay");
    }
}

Fault manyThatDie(Situation situation) {
    return {.name = std::string("1,000 tray clients dock and die, ") + nameOf(situation),
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                dockAndDie(bench, batches);
            }};
}

Fault someThatDie() {
    return {.name = "100 tray clients dock and die, collapsed",
            .isInShortForm = true,
            .happen = [](Bench& bench) {
                bench.bringInto(Situation::Collapsed);
                dockAndDie(bench, 1);
            }};
}

Fault realOnesThatDie() {
    return {.name = "a real program docks and is killed 20 times, collapsed",
            .happen = [](Bench& bench) {
                constexpr int times = 20;
                bench.bringInto(Situation::Collapsed);
                for (int time = 0; time < times; ++time) {
                    bench.killProgram("qmidinet");
                    bench.restartProgram("qmidinet");
                }
            }};
}

// Each a process of its own, so that the system ends it and not a test.
Fault processesThatDie() {
    return {
        .name = "1,000 tray programs dock and are killed, collapsed", .happen = [](Bench& bench) {
            constexpr int atOnce = 50;
            constexpr int rounds = 20;
            bench.bringInto(Situation::Collapsed);
            const auto own = std::filesystem::read_symlink("/proc/self/exe").string();
            for (int round = 0; round < rounds; ++round) {
                std::vector<std::unique_ptr<ChildProcess>> processes;
                for (int number = 0; number < atOnce; ++number) {
                    processes.push_back(bench.desktop().display().start(
                        {own, "--icon", "Process" + std::to_string(number)}));
                }
                // The others are on their way.
                if (!waitFor([&] {
                        return bench.desktop().items().size() >=
                               bench.firstOrder().size() + atOnce / 2;
                    })) {
                    throw std::runtime_error("they do not dock: " + processes.front()->output());
                }
            }
            if (!waitFor([&] {
                    return bench.desktop().items().size() == bench.firstOrder().size() + 2;
                })) {
                throw std::runtime_error("icons of killed programs stay");
            }
        }};
}

Fault neverAnswers() {
    return {.name = "an icon whose program never answers is clicked in the row",
            .isInShortForm = true,
            .happen = [](Bench& bench) {
                TrayClient silent(bench.desktop().display().name(), {.name = "Silent"});
                silent.requestDock();
                if (!waitFor([&] { return bench.desktop().item("Silent").has_value(); })) {
                    throw std::runtime_error("it is not docked");
                }
                bench.bringInto(Situation::RowOpen);
                bench.desktop().input().click(centre(bench.rowIcon("Silent").frame),
                                              UserInput::Button::Right);
                if (!waitFor([&] { return !bench.row().isOpen(); }) || !bench.calm()) {
                    throw std::runtime_error("the organiser waits for it");
                }
            }};
}

} // namespace

std::vector<Fault> clientFaults() {
    return {someThatDie(),
            neverAnswers(),
            manyThatDie(Situation::Expanded),
            manyThatDie(Situation::Collapsed),
            manyThatDie(Situation::RowOpen),
            realOnesThatDie(),
            processesThatDie()};
}

} // namespace pelistra::testing
