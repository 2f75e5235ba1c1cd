#include "tests/faults/Mounts.h"
#include "tests/faults/Suite.h"

#include <memory>
#include <stdexcept>
#include <utility>

namespace pelistra::testing {

namespace {

// The two disks that a user meets on which nothing can be written.
enum class Disk : std::uint8_t { Full, ReadOnly };

const char* nameOf(Disk disk) {
    return disk == Disk::Full ? "the disk is full" : "the home is read-only";
}

using Mounts = std::vector<std::unique_ptr<Mounted>>;

Mounts mounted(const PrivateDisplay& display, Disk disk) {
    Mounts mounts;
    if (disk == Disk::Full) {
        mounts.push_back(std::make_unique<FullDisk>(display.configFolder() / "pelistra"));
        mounts.push_back(std::make_unique<FullDisk>(display.stateFolder() / "pelistra"));
        return mounts;
    }
    for (const char* folder : {"home", "config", "state", "data", "cache"}) {
        mounts.push_back(std::make_unique<ReadOnly>(display.folder() / folder));
    }
    return mounts;
}

// Drags the leftmost icon over its right neighbour.
void swapFirstTwo(Bench& bench) {
    const auto items = bench.desktop().items();
    if (items.size() < 2) {
        throw std::runtime_error("the bar is empty");
    }
    std::vector<std::string> wanted = bench.foreignOrder();
    std::swap(wanted.at(0), wanted.at(1));
    if (!bench.desktop().dragItem(items[0].className, items[1].frame.midX() + 2) ||
        !waitFor([&] { return bench.foreignOrder() == wanted; })) {
        throw std::runtime_error("an icon cannot be dragged");
    }
}

Fault arranging(Disk disk) {
    return {.name = std::string("icons are arranged while ") + nameOf(disk),
            .isInShortForm = disk == Disk::Full,
            .happen = [disk](Bench& bench) {
                bench.bringInto(Situation::Expanded);
                const Mounts mounts = mounted(bench.desktop().display(), disk);
                swapFirstTwo(bench);
                swapFirstTwo(bench);
                bench.bringInto(Situation::RowOpen);
            }};
}

Fault starting(Disk disk) {
    return {.name = std::string("both programs are killed and start while ") + nameOf(disk),
            .isInShortForm = disk == Disk::ReadOnly,
            .happen = [disk](Bench& bench) {
                bench.bringInto(Situation::Collapsed);
                const Mounts mounts = mounted(bench.desktop().display(), disk);
                bench.desktop().bar().process().kill();
                bench.desktop().organiser().process().kill();
                bench.restartBar();
                bench.restartOrganiser();
                bench.bringInto(Situation::SettingsOpen);
                bench.bringInto(Situation::RowOpen);
            }};
}

} // namespace

std::vector<Fault> diskFaults() {
    return {arranging(Disk::Full), arranging(Disk::ReadOnly), starting(Disk::Full),
            starting(Disk::ReadOnly)};
}

} // namespace pelistra::testing
