#include "tests/desktop/harness/FileContent.h"
#include "tests/faults/Suite.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace pelistra::testing {

namespace {

constexpr std::int64_t day = std::int64_t{24} * 60 * 60;

// Moves the wall clock of bar and organiser, which it starts anew for that; both have the true one
// again at the end.
class MovedClock {
public:
    explicit MovedClock(Bench& bench)
        : bench_(bench), file_(bench.desktop().display().folder() / "wall-clock") {
        moveBy(0);
        PrivateDisplay& display = bench_.desktop().display();
        display.setEnvironment("PELISTRA_WALL_CLOCK", file_.string());
        display.setEnvironment("LD_PRELOAD", PELISTRA_WALL_CLOCK_LIBRARY);
        // The sanitizers' library wants to be the first one.
        const auto options = display.environment().find("ASAN_OPTIONS");
        sanitizerOptions_ = options == display.environment().end() ? "" : options->second;
        display.setEnvironment("ASAN_OPTIONS", sanitizerOptions_ + ":verify_asan_link_order=0");
        restartBoth();
        for (ChildProcess* process :
             {&bench.desktop().bar().process(), &bench.desktop().organiser().process()}) {
            if (!isLoadedInto(process->pid())) {
                throw std::runtime_error("the clock of " + process->name() + " cannot be moved");
            }
        }
    }
    MovedClock(const MovedClock&) = delete;
    MovedClock& operator=(const MovedClock&) = delete;
    ~MovedClock() {
        PrivateDisplay& display = bench_.desktop().display();
        display.setEnvironment("LD_PRELOAD", "");
        display.setEnvironment("ASAN_OPTIONS", sanitizerOptions_);
    }

    void moveBy(std::int64_t seconds) {
        // In place: the programs have the file mapped.
        std::ofstream(file_, std::ios::binary | std::ios::app).close();
        std::fstream file(file_, std::ios::binary | std::ios::in | std::ios::out);
        file.write(reinterpret_cast<const char*>(&seconds), sizeof seconds);
        if (!file.flush()) {
            throw std::runtime_error("the clock cannot be moved");
        }
    }

private:
    void restartBoth() {
        bench_.desktop().organiser().process().terminate();
        bench_.desktop().bar().process().terminate();
        bench_.restartBar();
        bench_.restartOrganiser();
    }

    static bool isLoadedInto(pid_t process) {
        return contentOf("/proc/" + std::to_string(process) + "/maps")
                   .find(PELISTRA_WALL_CLOCK_LIBRARY) != std::string::npos;
    }

    Bench& bench_;
    std::filesystem::path file_;
    std::string sanitizerOptions_;
};

Fault jumps(Situation situation) {
    return {.name = std::string("the clock jumps a day ahead, then two back, ") + nameOf(situation),
            .isInShortForm = situation == Situation::RowOpen,
            .happen = [situation](Bench& bench) {
                MovedClock clock(bench);
                for (const std::int64_t seconds : {day, -day}) {
                    bench.bringInto(situation);
                    clock.moveBy(seconds);
                    // Every delay of the product takes part in these.
                    bench.bringInto(Situation::RowOpen);
                }
            }};
}

} // namespace

std::vector<Fault> clockFaults() {
    return {jumps(Situation::Collapsed), jumps(Situation::RowOpen), jumps(Situation::Revealed)};
}

} // namespace pelistra::testing
