#include "tests/desktop/harness/FileContent.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

// The stand-ins would accept a misspelt name that the real frameworks lack. So whatever the front
// end sends, calls and names has to be on a list that was held against the real interfaces.
namespace pelistra::macos {
namespace {

using ::testing::Contains;
using ::testing::IsEmpty;

struct Reviewed {
    std::set<std::string> selectors;
    std::set<std::string> names;
    std::set<std::string> deprecated;
    std::map<std::string, int> sinceMajor;
};

std::vector<std::string> fieldsOf(const std::string& line) {
    std::vector<std::string> fields;
    std::istringstream stream(line);
    for (std::string field; std::getline(stream, field, '\t');) {
        fields.push_back(field);
    }
    fields.resize(6);
    return fields;
}

Reviewed readList() {
    Reviewed reviewed;
    std::ifstream file(PELISTRA_REVIEWED_INTERFACES);
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) {
        const auto fields = fieldsOf(line);
        (fields[0] == "selector" ? reviewed.selectors : reviewed.names).insert(fields[1]);
        if (fields[5] == "deprecated") {
            reviewed.deprecated.insert(fields[1]);
        }
        reviewed.sinceMajor[fields[1]] = std::atoi(fields[4].c_str());
    }
    return reviewed;
}

std::string outputOf(const std::string& command) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(popen(command.c_str(), "r"), pclose);
    std::string output;
    std::array<char, 4096> buffer{};
    while (const std::size_t length = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) {
        output.append(buffer.data(), length);
    }
    return output;
}

// The selectors that compiled code sends: the compiler gives each a symbol.
std::set<std::string> selectorsSent(const std::string& symbols) {
    const std::string mark = ".objc_sel_name";
    std::set<std::string> found;
    std::istringstream stream(symbols);
    for (std::string line; std::getline(stream, line);) {
        if (const auto place = line.find(mark); place != std::string::npos) {
            found.insert(line.substr(place + mark.size()));
        }
    }
    return found;
}

// The frameworks' names in a source, outside comments and texts.
std::set<std::string> namesIn(const std::string& source) {
    static const std::regex comment("//[^\n]*");
    static const std::regex text(R"("(\\.|[^"\\\n])*")");
    static const std::regex name(
        R"(\b(NS|CG|kCG|SM|CA|kCA|CF|kCF|OS_LOG_|RTLD_|DISPATCH_|dispatch_|os_log|dl(open|sym|close)\b)\w*)");
    const std::string code =
        std::regex_replace(std::regex_replace(source, comment, ""), text, "\"\"");
    std::set<std::string> found;
    for (std::sregex_iterator match(code.begin(), code.end(), name), end; match != end; ++match) {
        found.insert(match->str());
    }
    return found;
}

std::set<std::string> namesInFrontEnd() {
    std::set<std::string> found;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(PELISTRA_FRONT_END_FOLDER)) {
        if (entry.path().extension() == ".mm" || entry.path().extension() == ".h") {
            found.merge(namesIn(testing::contentOf(entry.path())));
        }
    }
    return found;
}

// What the page on the calls' proof has in backquotes: selectors of messages, and plain names.
std::set<std::string> callsInProof() {
    const std::string page = testing::contentOf(PELISTRA_PROOF_PAGE);
    static const std::regex call(R"(`(?:\[[^\]`]* )?([\w:]+)\]?`)");
    std::set<std::string> found;
    for (std::sregex_iterator match(page.begin(), page.end(), call), end; match != end; ++match) {
        found.insert((*match)[1].str());
    }
    return found;
}

// The frameworks' functions, by the symbols that compiled code leaves open.
std::set<std::string> functionsCalled(const std::string& symbols) {
    static const std::regex open(R"( U ((?:CG|CF|dispatch_|os_log|standin)\w+))");
    static const std::map<std::string, std::string> realNames = {
        {"standinDlopen", "dlopen"},
        {"standinDlsym", "dlsym"},
        {"standinDlclose", "dlclose"},
        {"standinLogWithType", "os_log_with_type"},
    };
    std::set<std::string> found;
    for (std::sregex_iterator match(symbols.begin(), symbols.end(), open), end; match != end;
         ++match) {
        const std::string name = (*match)[1].str();
        const auto real = realNames.find(name);
        found.insert(real == realNames.end() ? name : real->second);
    }
    return found;
}

// Members of C++ classes that point to Objective-C objects and do not say whether they own them:
// with automatic counting they do. Members end in an underscore here.
std::vector<std::string> unsaidPointers(const std::string& source) {
    static const std::regex member(
        R"(^\s+(?:(?:NS|CA|Pelistra)\w+\s*\*|id|std::\w+<(?:.*[<,] ?)?(?:NS|CA|Pelistra)\w+\s*\*>)\s*\w+_(?: = [^;]*)?;)");
    std::vector<std::string> found;
    std::istringstream lines(source);
    for (std::string line; std::getline(lines, line);) {
        if (std::regex_search(line, member)) {
            found.push_back(line);
        }
    }
    return found;
}

std::vector<std::string> missing(const std::set<std::string>& used,
                                 const std::set<std::string>& reviewed) {
    std::vector<std::string> result;
    std::ranges::set_difference(used, reviewed, std::back_inserter(result));
    return result;
}

TEST(InterfacesTest, EverySelectorWasReviewed) {
    const auto sent = selectorsSent(outputOf("nm " PELISTRA_FRONT_END_LIBRARY " 2>/dev/null"));
    ASSERT_THAT(sent, Contains("initWithContentRect:styleMask:backing:defer:"));
    EXPECT_THAT(missing(sent, readList().selectors), IsEmpty());
}

TEST(InterfacesTest, EveryNameWasReviewed) {
    const auto used = namesInFrontEnd();
    ASSERT_THAT(used, Contains("CGEventPostToPid"));
    EXPECT_THAT(missing(used, readList().names), IsEmpty());
}

TEST(InterfacesTest, ThePageSaysHowEveryCallIsProven) {
    const std::string symbols = outputOf("nm " PELISTRA_FRONT_END_LIBRARY " 2>/dev/null");
    const auto sent = selectorsSent(symbols);
    const auto called = functionsCalled(symbols);
    const auto proven = callsInProof();
    ASSERT_THAT(called, Contains("dlopen"));
    EXPECT_THAT(missing(sent, proven), IsEmpty());
    EXPECT_THAT(missing(called, proven), IsEmpty());
    // Nor does it name messages that are no longer sent.
    std::set<std::string> messages;
    std::ranges::copy_if(proven, std::inserter(messages, messages.end()),
                         [](const std::string& name) { return name.ends_with(':'); });
    messages.erase("setDelegate:");
    EXPECT_THAT(missing(messages, sent), IsEmpty());
}

TEST(InterfacesTest, NothingIsNewerThanTheDeploymentTarget) {
    for (const auto& [name, major] : readList().sinceMajor) {
        EXPECT_LE(major, 15) << name;
    }
}

TEST(InterfacesTest, OnlyOneDeprecatedSelectorIsSent) {
    EXPECT_EQ(readList().deprecated, std::set<std::string>{"activateIgnoringOtherApps:"});
}

TEST(InterfacesTest, WhatMacOS15LacksIsOnlyLookedUpByItsName) {
    EXPECT_THAT(namesInFrontEnd(), ::testing::Not(Contains("CGWindowListCreateImageFromArray")));
}

TEST(InterfacesTest, NoClassOwnsAnObjectWithoutSayingSo) {
    std::size_t files = 0;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(PELISTRA_FRONT_END_FOLDER)) {
        if (entry.is_regular_file()) {
            EXPECT_THAT(unsaidPointers(testing::contentOf(entry.path())), IsEmpty())
                << entry.path();
            ++files;
        }
    }
    EXPECT_GT(files, 40U);
    EXPECT_THAT(unsaidPointers("    NSView* view_;\n    id token_ = nil;\n"
                               "    std::vector<NSStatusItem*> items_;\n"),
                ::testing::SizeIs(3));
    EXPECT_THAT(unsaidPointers("    Owned<NSView*> view_;\n    __unsafe_unretained NSView* v_;\n"
                               "    std::vector<Owned<NSView*>> views_;\n"),
                IsEmpty());
}

TEST(InterfacesTest, AMisspeltSelectorAndNameAreFound) {
    const Reviewed reviewed = readList();
    EXPECT_THAT(missing(selectorsSent("0 V .objc_sel_namesetTitel:\n0 V .objc_sel_namesetTitle:\n"),
                        reviewed.selectors),
                ::testing::ElementsAre("setTitel:"));
    EXPECT_THAT(
        missing(namesIn("// NSComment\nNSWindwo* w; NSWindow* v = @\"NSText\";"), reviewed.names),
        ::testing::ElementsAre("NSWindwo"));
}

} // namespace
} // namespace pelistra::macos
