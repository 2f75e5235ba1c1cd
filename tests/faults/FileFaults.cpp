#include "tests/faults/Suite.h"

#include <filesystem>
#include <fstream>

namespace pelistra::testing {

namespace {

// Puts a file where a program wants its folder, so that nothing can be written there, and the
// folder back at the end.
class Blocked {
public:
    explicit Blocked(std::filesystem::path folder)
        : folder_(std::move(folder)), aside_(folder_.string() + ".aside") {
        std::filesystem::create_directories(folder_);
        std::filesystem::rename(folder_, aside_);
        std::ofstream(folder_) << "not a folder\n";
    }
    Blocked(const Blocked&) = delete;
    Blocked& operator=(const Blocked&) = delete;
    ~Blocked() {
        std::error_code error;
        std::filesystem::remove(folder_, error);
        std::filesystem::rename(aside_, folder_, error);
    }

private:
    std::filesystem::path folder_;
    std::filesystem::path aside_;
};

Fault unwritableSettings() {
    return {.name = "the organiser's folder is not writable, from its start on",
            .isInShortForm = true,
            .happen = [](Bench& bench) {
                const Blocked blocked(bench.desktop().display().configFolder() / "pelistra");
                bench.desktop().organiser().process().kill();
                bench.restartOrganiser();
                bench.bringInto(Situation::RowOpen);
            }};
}

Fault unwritableOrder() {
    return {.name = "the bar's folder is not writable while it runs", .happen = [](Bench& bench) {
                const Blocked blocked(bench.desktop().display().stateFolder() / "pelistra");
                bench.restartProgram("qmidinet");
                bench.bringInto(Situation::RowOpen);
            }};
}

Fault damagedFiles() {
    return {.name = "both files are damaged, and both programs killed", .happen = [](Bench& bench) {
                const PrivateDisplay& display = bench.desktop().display();
                bench.desktop().organiser().process().kill();
                std::ofstream(display.configFolder() / "pelistra" / "defaults")
                    << std::string(1000, '\xff') << "\n\"half";
                bench.restartOrganiser();
                if (!bench.calm()) {
                    throw std::runtime_error("the organiser does not come to rest");
                }
            }};
}

} // namespace

std::vector<Fault> fileFaults() {
    return {unwritableSettings(), unwritableOrder(), damagedFiles()};
}

} // namespace pelistra::testing
