#include "tests/desktop/harness/TrayClient.h"
#include "tests/faults/Suite.h"

#include <algorithm>
#include <csignal>
#include <memory>
#include <stdexcept>

namespace pelistra::testing {

namespace {

// An X server serves 256 clients at most.
constexpr int batch = 100;
constexpr int batches = 10;
constexpr std::chrono::seconds stopTime{3};

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

// Whatever is asked about its window is answered by the server; its own answers do not come.
Fault stopped(Situation situation) {
    return {.name = std::string("a tray program is stopped for a while, ") + nameOf(situation),
            .isInShortForm = situation == Situation::Collapsed,
            .happen = [situation](Bench& bench) {
                bench.bringInto(situation);
                ChildProcess& process = bench.desktop().program("parcellite");
                process.signal(SIGSTOP);
                const bool works = staysTrue(
                    [&] {
                        return bench.desktop().organiser().process().isRunning() &&
                               bench.desktop().bar().process().isRunning();
                    },
                    stopTime);
                const bool calms = bench.calm();
                process.signal(SIGCONT);
                if (!works || !calms) {
                    throw std::runtime_error("the organiser depends on a stopped program");
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
                // The row shows the hidden items in the bar's order.
                const auto hidden = bench.desktop().hiddenSection();
                const auto icons = bench.row().icons();
                const auto place = std::ranges::find(hidden, "Silent", &Desktop::Item::className);
                if (place == hidden.end() || icons.size() != hidden.size()) {
                    throw std::runtime_error("the row lacks it");
                }
                const auto& icon = icons[static_cast<std::size_t>(place - hidden.begin())];
                bench.desktop().input().click(centre(icon.frame), UserInput::Button::Right);
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
            stopped(Situation::Collapsed),
            stopped(Situation::RowOpen),
            stopped(Situation::Revealed)};
}

} // namespace pelistra::testing
