#pragma once

#include "platform/linux/programs/DesktopEntry.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct sd_bus;

namespace pelistra::linux {

// Where a program is: as given when it has a folder, else in the folders of $PATH; empty when there
// is no such executable file.
[[nodiscard]] std::optional<std::filesystem::path> findProgram(const std::string& program);

// What has to be executed to start an entry's program: commandOf() with the program's full path, in
// a terminal where the entry asks for one. Empty when it cannot be started: TryExec or the program
// is not there, Exec breaks the rules, or a terminal is wanted and there is none
// (x-terminal-emulator).
[[nodiscard]] std::vector<std::string> startCommandOf(const DesktopEntry& entry);

// Starts a program that goes on by itself: its own session, no child of ours, no shell. False when
// it could not be executed. `folder` is where it starts; empty for the user's home.
[[nodiscard]] bool startDetached(const std::vector<std::string>& command,
                                 const std::filesystem::path& folder);

// Opens applications by their entries.
class Launcher {
public:
    // Through the session bus where the entry says so and the bus can start it, else by its
    // command. True when that was accepted.
    [[nodiscard]] bool launch(const DesktopEntry& entry);

private:
    struct BusCloser {
        void operator()(sd_bus* bus) const;
    };
    using Bus = std::unique_ptr<sd_bus, BusCloser>;

    [[nodiscard]] static Bus openSessionBus();
    [[nodiscard]] bool activateOnBus(const std::string& id);

    // Kept from the first need on: the bus forgets what a caller has asked of a program that is
    // still starting when the caller leaves.
    Bus bus_;
};

// The object path under which an application with that id listens on the session bus; empty when
// the id is no name for the bus.
[[nodiscard]] std::string busPathOf(const std::string& id);

} // namespace pelistra::linux
