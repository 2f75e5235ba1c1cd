// What the programs say in a terminal, in the language of whoever reads it.

#include "tests/house/Documentation.h"
#include "tests/packaging/Tools.h"
#include "tests/packaging/UnpackedPackage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::StartsWith;

namespace fs = std::filesystem;

constexpr const char* chineseUsage = "用法：";

class TranslationTests : public ::testing::Test {
protected:
    // Locales of these names, made of the one that every system has; which others there are is
    // nobody's to know.
    TranslationTests() {
        for (const char* name : {"zh_CN.utf8", "zh_TW.utf8", "en_GB.utf8"}) {
            fs::copy("/usr/lib/locale/C.utf8", locales_.path() / name, fs::copy_options::recursive);
        }
    }

    [[nodiscard]] std::string said(const std::string& program, const std::string& option,
                                   Environment environment) {
        environment.emplace("LOCPATH", locales_.path().string());
        // The C library does not free what it makes of LOCPATH.
        environment.emplace("ASAN_OPTIONS", "detect_leaks=0");
        return runTool({(package_.bin() / program).string(), option}, environment).output;
    }

    UnpackedPackage package_;
    TemporaryFolder locales_;
};

TEST_F(TranslationTests, EveryTextIsTranslatedAndNoneIsLeftOver) {
    const ToolRun run = runTool({"sh", "-ec", R"(cd ")" PELISTRA_SOURCE_FOLDER R"("
        find app menubar platform -name '*.cpp' |
            xargs xgettext --language=C++ --from-code=UTF-8 --keyword=translated --output=- |
            sed s/CHARSET/UTF-8/ | msgcmp packaging/linux/po/zh.po - 2>&1)"});
    EXPECT_TRUE(run.succeeded());
    EXPECT_EQ(run.output, "");
}

TEST_F(TranslationTests, HelpIsChineseInEveryChineseLocale) {
    for (const std::string program : {"pelistra", "pelistra-menubar"}) {
        for (const Environment& locale :
             {Environment{{"LC_ALL", "zh_CN.UTF-8"}}, Environment{{"LANG", "zh_TW.UTF-8"}},
              Environment{{"LANG", "en_GB.UTF-8"}, {"LC_MESSAGES", "zh_CN.UTF-8"}},
              Environment{{"LANG", "en_GB.UTF-8"}, {"LANGUAGE", "de:zh_HK:en"}}}) {
            const std::string help = said(program, "--help", locale);
            EXPECT_THAT(help, StartsWith(chineseUsage + program + " [选项]...\n"));
            EXPECT_EQ(switchesIn(help), switchesIn(said(program, "--help", {})));
        }
    }
}

TEST_F(TranslationTests, HelpIsEnglishElsewhereAndWithoutTheLocale) {
    for (const std::string program : {"pelistra", "pelistra-menubar"}) {
        for (const Environment& locale :
             {Environment{{"LC_ALL", "C"}}, Environment{{"LANG", "en_GB.UTF-8"}},
              Environment{{"LANG", "zh_CN.UTF-8"}, {"LC_MESSAGES", "en_GB.UTF-8"}},
              Environment{{"LANG", "zh_CN.UTF-8"}, {"LANGUAGE", "en"}},
              Environment{{"LANG", "zh_CN.UTF-8"}, {"LOCPATH", "/nonexistent"}}}) {
            EXPECT_THAT(said(program, "--help", locale),
                        StartsWith("Usage: " + program + " [OPTION]...\n"));
        }
    }
}

TEST_F(TranslationTests, ComplaintsQuoteWhatTheyComplainAbout) {
    const Environment chinese{{"LC_ALL", "zh_CN.UTF-8"}};
    EXPECT_EQ(said("pelistra", "--bo%1gus", chinese),
              "pelistra: 未知的选项“--bo%1gus”\n运行“pelistra --help”查看说明。\n");
    EXPECT_THAT(said("pelistra-menubar", "--scale=9", chinese),
                StartsWith("pelistra-menubar: “--scale”的值“9”不是 0.5 到 8 之间的数\n"));
    EXPECT_EQ(said("pelistra", "--show-settings", chinese),
              "pelistra: 没有 X 显示器：没有设置 DISPLAY\n");
    EXPECT_EQ(said("pelistra-menubar", "--display=:64999", chinese),
              "pelistra-menubar: 无法连接到 X 显示器“:64999”\n");
}

TEST_F(TranslationTests, ManualPagesAreChineseInEveryChineseLocale) {
    for (const char* locale : {"zh_CN.UTF-8", "zh_TW.UTF-8"}) {
        const ToolRun run = runTool({"man", "--where", "pelistra"},
                                    {{"LC_ALL", locale},
                                     {"LOCPATH", locales_.path().string()},
                                     {"MANPATH", (package_.share() / "man").string()}});
        EXPECT_EQ(run.output, package_.manuals("pelistra").back().string() + "\n") << locale;
    }
}

} // namespace
} // namespace pelistra::testing
