// The figures behind ./bench: printed beside what is aimed at, and kept as a page of documentation.

#include "benchmarks/CoreFigures.h"
#include "benchmarks/IdleFigures.h"
#include "benchmarks/Machine.h"
#include "benchmarks/NotifierFigures.h"
#include "benchmarks/RivalFigures.h"
#include "benchmarks/RowFigures.h"
#include "benchmarks/SectionFigures.h"
#include "benchmarks/TrayReaderFigures.h"
#include "benchmarks/WindowFigures.h"
#include "tests/desktop/harness/FileContent.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <future>
#include <iostream>
#include <set>
#include <string>
#include <vector>

namespace {

using namespace pelistra::testing;

constexpr int usageStatus = 2;

struct Choice {
    Effort effort;
    std::set<std::string> parts;
    std::string page;
    std::string notes;
};

// Empty for arguments that are not understood.
std::optional<Choice> parse(const std::vector<std::string>& arguments) {
    Choice choice;
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        if (argument == "--quick") {
            choice.effort = Effort::quick();
        } else if (argument == "--core" || argument == "--desktop" || argument == "--memory" ||
                   argument == "--rivals") {
            choice.parts.insert(argument.substr(2));
        } else if (argument == "--write" && index + 2 < arguments.size()) {
            choice.page = arguments[++index];
            choice.notes = arguments[++index];
        } else {
            return std::nullopt;
        }
    }
    if (choice.parts.empty()) {
        choice.parts = {"core", "desktop", "memory", "rivals"};
    }
    return choice;
}

class Run {
public:
    explicit Run(Choice choice) : choice_(std::move(choice)) {}

    void measure();
    // Whether everything could be measured; a missed aim is a result like any other.
    [[nodiscard]] bool isComplete() const { return failures_ == 0; }
    void writePage() const;

private:
    template <class Measure>
    void add(const std::string& name, Measure measure);
    void measureAtTheSameTime();
    void print(const Section& section);
    void print(const Comparison& comparison);

    Choice choice_;
    std::string page_;
    int failures_ = 0;
    int missed_ = 0;
};

template <class Measure>
void Run::add(const std::string& name, Measure measure) {
    try {
        print(measure());
    } catch (const std::exception& failure) {
        ++failures_;
        std::cerr << "pelistra-figures: " << name << ": " << failure.what() << "\n";
    }
}

void Run::print(const Section& section) {
    std::cout << plainText(section) << std::flush;
    page_ += markdown(section);
    missed_ += static_cast<int>(std::ranges::count_if(section.figures, &Figure::isMissed));
}

void Run::print(const Comparison& comparison) {
    std::cout << plainText(comparison) << std::flush;
    page_ += markdown(comparison);
}

// What does not depend on how fast the machine is meanwhile, each on a display of its own.
void Run::measureAtTheSameTime() {
    const Effort& effort = choice_.effort;
    std::future<Section> row;
    std::future<Section> windows;
    if (choice_.parts.contains("memory")) {
        row = std::async(std::launch::async, [&effort] { return rowMemoryFigures(effort); });
        windows = std::async(std::launch::async, [&effort] { return windowMemoryFigures(effort); });
    }
    if (choice_.parts.contains("desktop")) {
        add("idling", [&] { return idleFigures(effort); });
    }
    if (choice_.parts.contains("memory")) {
        add("window memory", [&] { return windows.get(); });
        add("row memory", [&] { return row.get(); });
    }
}

void Run::measure() {
    const Effort& effort = choice_.effort;
    const std::string machine = describeMachine();
    std::cout << machine << std::flush;
    if (choice_.parts.contains("core")) {
        add("core", [&] { return coreFigures(effort); });
    }
    if (choice_.parts.contains("desktop")) {
        add("looks at the tray", [&] { return trayReaderFigures(effort); });
        add("section", [&] { return sectionFigures(effort); });
        add("row", [&] { return rowFigures(effort); });
        add("windows", [&] { return windowFigures(effort); });
        add("icons on the session bus", [&] { return notifierFigures(effort); });
    }
    measureAtTheSameTime();
    if (choice_.parts.contains("rivals")) {
        add("other trays", [&] { return rivalFigures(effort); });
        add("other trays with icons on the session bus", [&] { return notifierRivals(effort); });
    }
    const std::string after = describeLoad();
    std::cout << "\n" << after << missed_ << " of the limits missed\n";
    page_ =
        "# Performance\n\nWritten by `./bench --write-docs`.\n\n" + machine + after + "\n" + page_;
}

void Run::writePage() const {
    if (!choice_.page.empty()) {
        std::ofstream(choice_.page) << page_ << contentOf(choice_.notes);
    }
}

} // namespace

int main(int argc, char* argv[]) {
    const auto choice = parse({argv + 1, argv + argc});
    if (!choice) {
        std::cerr << "Usage: pelistra-figures [--quick] [--core] [--desktop] [--memory] "
                     "[--rivals] [--write PAGE NOTES]\n";
        return usageStatus;
    }
    Run run(*choice);
    run.measure();
    run.writePage();
    return run.isComplete() ? EXIT_SUCCESS : EXIT_FAILURE;
}
