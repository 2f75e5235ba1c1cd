#include "tests/house/Documentation.h"
#include "tests/house/Sources.h"
#include "tests/packaging/Tools.h"
#include "tests/packaging/UnpackedPackage.h"

#include <algorithm>
#include <set>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;
using ::testing::Values;

namespace fs = std::filesystem;

// Once for each program.
class ManualsAndCompletionsTests : public ::testing::TestWithParam<std::string> {
protected:
    UnpackedPackage package_;
};

INSTANTIATE_TEST_SUITE_P(Of, ManualsAndCompletionsTests, Values("pelistra", "pelistra-menubar"));

TEST_P(ManualsAndCompletionsTests, ManualPagesFormatWithoutWarnings) {
    for (const fs::path& page : package_.manuals(GetParam())) {
        const ToolRun run =
            runTool({"man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page.string()},
                    {{"MANROFFSEQ", ""}, {"MANWIDTH", "80"}});
        EXPECT_TRUE(run.succeeded()) << page << run.output;
        EXPECT_THAT(run.output, StartsWith("x T utf8")) << page;
        EXPECT_THAT(run.output, Not(HasSubstr("warning"))) << page;
    }
}

TEST_P(ManualsAndCompletionsTests, TheManualPageIsFoundByItsName) {
    const ToolRun run =
        runTool({"man", "-M", (package_.share() / "man").string(), "--where", GetParam()});
    EXPECT_EQ(run.output, package_.manuals(GetParam()).front().string() + "\n");
}

TEST_P(ManualsAndCompletionsTests, CompletionsParse) {
    const ToolRun bash = runTool({"bash", "-n", package_.bashCompletion(GetParam()).string()});
    EXPECT_TRUE(bash.succeeded());
    EXPECT_EQ(bash.output, "");
    const ToolRun zsh = runTool({"zsh", "-n", package_.zshCompletion(GetParam()).string()});
    EXPECT_TRUE(zsh.succeeded());
    EXPECT_EQ(zsh.output, "");
}

TEST_P(ManualsAndCompletionsTests, ZshFindsTheCompletion) {
    const std::string script =
        "fpath=('" + package_.zshCompletion(GetParam()).parent_path().string() +
        "' $fpath); autoload -Uz compinit && compinit -u -D && print ${_comps[" + GetParam() + "]}";
    EXPECT_EQ(runTool({"zsh", "-f", "-c", script}).output, "_" + GetParam() + "\n");
}

// The section of options of a manual page's source, its hyphens as they are printed.
std::string optionsOf(const std::string& page) {
    const auto heading = std::min(page.find("\n.SH OPTIONS"), page.find("\n.SH 选项"));
    if (heading == std::string::npos) {
        return "";
    }
    std::string section = page.substr(heading, page.find("\n.SH ", heading + 1) - heading);
    std::erase(section, '\\');
    return section;
}

std::set<std::string> switchesOfHelp(const UnpackedPackage& package, const std::string& program) {
    const ToolRun help = runTool({(package.bin() / program).string(), "--help"});
    EXPECT_TRUE(help.succeeded()) << help.output;
    auto switches = switchesIn(help.output);
    EXPECT_THAT(switches, IsSupersetOf({"--help", "--version"}));
    return switches;
}

TEST_P(ManualsAndCompletionsTests, ManualPagesNameTheSwitchesOfTheHelp) {
    const auto switches = switchesOfHelp(package_, GetParam());
    for (const fs::path& page : package_.manuals(GetParam())) {
        EXPECT_EQ(switchesIn(optionsOf(uncompressed(page))), switches) << page;
    }
}

TEST_P(ManualsAndCompletionsTests, CompletionsNameTheSwitchesOfTheHelp) {
    const auto switches = switchesOfHelp(package_, GetParam());
    EXPECT_EQ(switchesIn(contentOf(package_.bashCompletion(GetParam()))), switches);
    EXPECT_EQ(switchesIn(contentOf(package_.zshCompletion(GetParam()))), switches);
}

// What bash offers for the last of the words, the program's name being the first.
std::vector<std::string> offeredByBash(const UnpackedPackage& package, const std::string& program,
                                       const std::string& words) {
    const std::string script = ". '" + package.bashCompletion(program).string() +
                               "'\nCOMP_WORDS=(" + program + " " + words +
                               R"()
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
read -r _ _ function _ < <(complete -p "$COMP_WORDS")
"$function"
printf '%s\n' "${COMPREPLY[@]}")";
    const ToolRun run = runTool({"bash", "-c", script});
    EXPECT_TRUE(run.succeeded()) << run.output;
    return linesOf(run.output);
}

TEST(BashCompletionTests, SwitchesAndTheirValuesAreOffered) {
    const UnpackedPackage package;
    EXPECT_THAT(offeredByBash(package, "pelistra", "--show-"),
                ElementsAre("--show-settings", "--show-onboarding"));
    const std::string bar = "pelistra-menubar";
    EXPECT_THAT(offeredByBash(package, bar, "--rep"), ElementsAre("--replace"));
    EXPECT_THAT(offeredByBash(package, bar, "--theme ''"), ElementsAre("auto", "light", "dark"));
    EXPECT_THAT(offeredByBash(package, bar, "--theme = d"), ElementsAre("dark"));
    EXPECT_THAT(offeredByBash(package, bar, "--scale ''"), ElementsAre(""));
}

} // namespace
} // namespace pelistra::testing
