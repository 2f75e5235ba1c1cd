#include "platform/linux/commandline/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using linux::CommandLine;
using ::testing::HasSubstr;
using ::testing::Not;

CommandLine parse(std::vector<std::string> options) {
    options.insert(options.begin(), "/usr/bin/pelistra");
    return linux::parseCommandLine(options, "1.2.3");
}

TEST(CommandLine, RunsWithoutOptions) {
    EXPECT_EQ(parse({}).request, CommandLine::Request::Run);
    EXPECT_EQ(linux::parseCommandLine({}, "1").request, CommandLine::Request::Run);
}

TEST(CommandLine, RunsWithAnyOfTheProductsSwitches) {
    EXPECT_EQ(parse({"--show-settings", "--show-onboarding", "--start-collapsed",
                     "--verify-section-layout", "--start-menu-bar"})
                  .request,
              CommandLine::Request::Run);
}

TEST(CommandLine, SaysItsVersion) {
    const auto line = parse({"--start-collapsed", "--version"});
    EXPECT_EQ(line.request, CommandLine::Request::Version);
    EXPECT_EQ(line.message, "pelistra 1.2.3\n");
}

TEST(CommandLine, HelpNamesEveryOption) {
    const auto line = parse({"--help", "--nonsense"});
    EXPECT_EQ(line.request, CommandLine::Request::Help);
    for (const char* option :
         {"--show-settings", "--show-onboarding", "--start-collapsed", "--verify-section-layout",
          "--start-menu-bar", "--list-items", "--json", "--help", "--version"}) {
        EXPECT_THAT(line.message, HasSubstr(option));
    }
    EXPECT_EQ(parse({"-h"}).message, line.message);
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
    for (const char* unknown : {"--show-setting", "--show-settings=1", "-v", "file", ""}) {
        const auto line = parse({"--show-settings", unknown});
        EXPECT_EQ(line.request, CommandLine::Request::Refuse) << unknown;
        EXPECT_THAT(line.message, HasSubstr("unknown option '" + std::string(unknown) + "'"));
    }
}

TEST(CommandLine, ListsItemsAsATableOrAsJson) {
    EXPECT_EQ(parse({"--list-items"}).request, CommandLine::Request::ListItems);
    EXPECT_EQ(parse({"--list-items", "--json"}).request, CommandLine::Request::ListItemsAsJson);
    EXPECT_EQ(parse({"--json", "--list-items"}).request, CommandLine::Request::ListItemsAsJson);
}

TEST(CommandLine, JsonNeedsAList) {
    const auto line = parse({"--json"});
    EXPECT_EQ(line.request, CommandLine::Request::Refuse);
    EXPECT_THAT(line.message, HasSubstr("--list-items"));
}

TEST(CommandLine, AnUnknownOptionCannotSteerTheTerminal) {
    EXPECT_THAT(parse({"--a\x1b[2J\n"}).message, Not(HasSubstr("\x1b")));
}

} // namespace

} // namespace pelistra::testing
