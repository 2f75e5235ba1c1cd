#pragma once

#include "tests/desktop/harness/ChildProcess.h"

#include <filesystem>
#include <string>
#include <vector>

namespace pelistra::testing {

// How a tool of the system ended, and all that it wrote.
struct ToolRun {
    ExitStatus exit;
    std::string output;

    [[nodiscard]] bool succeeded() const { return exit == ExitStatus{.status = 0}; }
    // The lines written in which none of these words is.
    [[nodiscard]] std::vector<std::string>
    linesWithout(const std::vector<std::string>& words) const;
};

// Runs a tool to its end, in English, with a folder of its own as home. A tool that is not
// installed ends with status 127; one that does not end in 100 seconds is killed.
[[nodiscard]] ToolRun runTool(const std::vector<std::string>& command,
                              const Environment& additional = {});

// The package that this build has made.
[[nodiscard]] std::filesystem::path packageUnderTest();

} // namespace pelistra::testing
