#include "tests/packaging/Tools.h"

#include "tests/desktop/harness/TemporaryFolder.h"
#include "tests/house/Sources.h"

#include <algorithm>
#include <chrono>
#include <csignal>

namespace pelistra::testing {

std::vector<std::string> ToolRun::linesWithout(const std::vector<std::string>& words) const {
    auto lines = linesOf(output);
    std::erase_if(lines, [&](const std::string& line) {
        return std::ranges::any_of(
            words, [&](const std::string& word) { return line.find(word) != std::string::npos; });
    });
    return lines;
}

ToolRun runTool(const std::vector<std::string>& command, const Environment& additional) {
    constexpr std::chrono::seconds bound{100};
    const TemporaryFolder home;
    Environment environment{{"PATH", "/usr/local/bin:/usr/bin:/bin:/usr/sbin:/sbin"},
                            {"LANG", "C.UTF-8"},
                            {"HOME", home.path().string()},
                            {"XDG_RUNTIME_DIR", home.path().string()}};
    for (const auto& [name, value] : additional) {
        environment[name] = value;
    }
    ChildProcess process(command, environment, home.path() / "output");
    ToolRun run;
    if (const auto exit = process.waitForExit(bound)) {
        run.exit = *exit;
    } else {
        process.kill();
        run.exit = {.status = {}, .killedBySignal = SIGKILL};
    }
    run.output = process.output();
    return run;
}

std::filesystem::path packageUnderTest() {
    return PELISTRA_PACKAGE;
}

} // namespace pelistra::testing
