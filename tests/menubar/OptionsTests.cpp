#include "menubar/Options.h"

#include <initializer_list>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::EarlyEnd;
using menubar::HousingOption;
using menubar::Options;
using menubar::parseOptions;
using menubar::ThemeChoice;
using ::testing::HasSubstr;
using ::testing::StartsWith;

Options accepted(const std::vector<std::string_view>& arguments) {
    const auto result = parseOptions(arguments);
    const auto* end = std::get_if<EarlyEnd>(&result);
    EXPECT_EQ(end, nullptr) << (end != nullptr ? end->text : "");
    return end == nullptr ? std::get<Options>(result) : Options{};
}

EarlyEnd ended(const std::vector<std::string_view>& arguments) {
    const auto result = parseOptions(arguments);
    const auto* end = std::get_if<EarlyEnd>(&result);
    EXPECT_NE(end, nullptr);
    return end != nullptr ? *end : EarlyEnd{.status = -1, .text = {}};
}

TEST(OptionsTests, NoArgumentsMeanTheDefaults) {
    EXPECT_EQ(accepted({}), Options{});
    EXPECT_EQ(Options{}.theme, ThemeChoice::Auto);
    EXPECT_FALSE(Options{}.replace);
}

TEST(OptionsTests, ReadsEveryOptionInBothForms) {
    const Options expected{.theme = ThemeChoice::Dark,
                           .scale = 1.5,
                           .display = ":7",
                           .housing = HousingOption{.x = 500, .width = 180.5},
                           .replace = true,
                           .statusNotifier = false};
    EXPECT_EQ(accepted({"--theme", "dark", "--scale", "1.5", "--display", ":7", "--camera-housing",
                        "500,180.5", "--replace", "--no-status-notifier"}),
              expected);
    EXPECT_EQ(accepted({"--theme=dark", "--scale=1.5", "--display=:7", "--camera-housing=500,180.5",
                        "--replace", "--no-status-notifier"}),
              expected);
    EXPECT_EQ(accepted({"--theme=light"}).theme, ThemeChoice::Light);
}

TEST(OptionsTests, ALaterOptionReplacesAnEarlierOne) {
    EXPECT_EQ(accepted({"--scale=2", "--scale", "3"}).scale, 3);
    EXPECT_EQ(accepted({"--theme=dark", "--theme=auto"}).theme, ThemeChoice::Auto);
}

TEST(OptionsTests, TheScaleHasBounds) {
    EXPECT_EQ(accepted({"--scale=0.5"}).scale, 0.5);
    EXPECT_EQ(accepted({"--scale=8"}).scale, 8);
    for (const std::string_view value : {"0.49", "8.01", "0", "-1", "nan", "inf", "2x", "", " 2"}) {
        EXPECT_EQ(ended({"--scale", value}).status, 2) << value;
    }
}

TEST(OptionsTests, TheHousingHasBounds) {
    EXPECT_EQ(accepted({"--camera-housing=0,1"}).housing, (HousingOption{.x = 0, .width = 1}));
    for (const std::string_view value :
         {"10", "10,", ",10", "a,b", "10,-5", "-1,10", "10,0", "1e9,10", "1,2,3", "nan,1"}) {
        EXPECT_EQ(ended({"--camera-housing", value}).status, 2) << value;
    }
}

TEST(OptionsTests, WrongCommandLinesAreExplained) {
    EXPECT_THAT(ended({"--bogus"}).text, HasSubstr("unknown option '--bogus'"));
    EXPECT_THAT(ended({"--bogus=3"}).text, HasSubstr("unknown option '--bogus'"));
    EXPECT_THAT(ended({"-x"}).text, HasSubstr("unknown option '-x'"));
    EXPECT_THAT(ended({"stray"}).text, HasSubstr("unexpected argument 'stray'"));
    EXPECT_THAT(ended({"--theme"}).text, HasSubstr("'--theme' needs a value"));
    EXPECT_THAT(ended({"--replace=yes"}).text, HasSubstr("'--replace' takes no value"));
    EXPECT_THAT(ended({"--theme=pink"}).text,
                HasSubstr("'pink' of '--theme' is neither auto, light nor dark"));
    EXPECT_THAT(ended({"--display="}).text, HasSubstr("is not the name of a display"));
    for (const std::string_view argument : {"--bogus", "stray", "--theme"}) {
        const EarlyEnd end = ended({argument});
        EXPECT_EQ(end.status, 2);
        EXPECT_THAT(end.text, StartsWith("pelistra-menubar: "));
        EXPECT_THAT(end.text, HasSubstr("--help"));
    }
}

TEST(OptionsTests, HelpNamesEveryOptionAndEndsWell) {
    const EarlyEnd help = ended({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* option : {"--theme", "--scale", "--camera-housing", "--replace",
                               "--no-status-notifier", "--display", "--help", "--version"}) {
        EXPECT_THAT(help.text, HasSubstr(option));
    }
    EXPECT_EQ(ended({"-h"}).text, help.text);
}

TEST(OptionsTests, VersionIsTheProjectsOwn) {
    const EarlyEnd version = ended({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.text, "pelistra-menubar " + std::string(menubar::versionNumber()) + "\n");
    EXPECT_FALSE(menubar::versionNumber().empty());
}

} // namespace
} // namespace pelistra::testing
