#include "tests/desktop/harness/ChildProcess.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/TemporaryFolder.h"
#include "tests/house/Documentation.h"
#include "tests/house/Includes.h"
#include "tests/house/Sources.h"
#include "tests/house/Waits.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::MatchesRegex;
using ::testing::Not;
using ::testing::SizeIs;

const std::filesystem::path sourceFolder = PELISTRA_SOURCE_FOLDER;
constexpr std::chrono::minutes wholeTree{2};

struct Ended {
    std::optional<ExitStatus> status;
    std::string output;
};

Ended runToEnd(const std::vector<std::string>& command) {
    const TemporaryFolder folder;
    const Environment environment{{"PATH", "/usr/local/bin:/usr/bin:/bin"}, {"LANG", "C.UTF-8"}};
    ChildProcess process(command, environment, folder.path() / "output");
    const auto status = process.waitForExit(wholeTree);
    return {.status = status, .output = process.output()};
}

void write(const std::filesystem::path& file, const std::string& content) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << content;
}

TEST(HouseTests, TheCoreAndTheSeamIncludeNothingForeign) {
    EXPECT_THAT(foreignIncludesOfTree(sourceFolder), IsEmpty());
}

TEST(HouseTests, ForeignIncludesAreFoundInCoreAndSeam) {
    const TemporaryFolder tree;
    write(tree.path() / "app" / "Bad.cpp", "#include <QWidget>\n#include <vector>\n");
    write(tree.path() / "app" / "main.cpp", "#include <QApplication>\n");
    write(tree.path() / "ui" / "deep" / "Bad.h",
          "#  include \"platform/linux/windows/QtPictures.h\"\n");
    write(tree.path() / "platform" / "Seam.h", "#include <xcb/xcb.h>\n");
    write(tree.path() / "platform" / "linux" / "Fine.cpp", "#include <xcb/xcb.h>\n");
    write(tree.path() / "base" / "Bad.h", "#include \"platform/Screens.h\"\n");
    EXPECT_THAT(foreignIncludesOfTree(tree.path()),
                ElementsAre(HasSubstr("app/Bad.cpp: #include <QWidget>"),
                            HasSubstr("platform/linux/windows/QtPictures.h"),
                            HasSubstr("platform/Seam.h: #include <xcb/xcb.h>"),
                            HasSubstr("base/Bad.h: #include \"platform/Screens.h\"")));
}

TEST(HouseTests, EveryKindOfForeignIncludeIsSeen) {
    for (const char* directive :
         {"#include <X11/Xlib.h>", "#include <AppKit/AppKit.h>", "#import <Cocoa/Cocoa.h>",
          "#include <unistd.h>", "#include <systemd/sd-journal.h>", "  #  include <glib.h>",
          "#include \"menubar/Layout.h\"", "#include \"platform/x11/Atoms.h\"",
          "#include SOME_MACRO", "#include <QString> // for a text"}) {
        EXPECT_THAT(foreignIncludes(directive, Layer::Core), SizeIs(1)) << directive;
    }
    for (const char* directive :
         {"#include <vector>", "#include \"base/Geometry.h\"",
          "#include \"overflow/OverflowItem.h\"", "// #include <QWidget>"}) {
        EXPECT_THAT(foreignIncludes(directive, Layer::Core), IsEmpty()) << directive;
    }
    EXPECT_THAT(foreignIncludes("#include \"overflow/OverflowItem.h\"", Layer::Seam), SizeIs(1));
}

TEST(HouseTests, NobodyWaitsForTheServerWithoutABound) {
    EXPECT_THAT(endlessWaitsOfTree(sourceFolder), IsEmpty());
}

TEST(HouseTests, EndlessWaitsAreFound) {
    for (const char* call :
         {"xcb_get_geometry_reply(x, cookie, nullptr)", "xcb_input_xi_query_device_reply (x, c, 0)",
          "xcb_wait_for_event(x)", "xcb_wait_for_reply(x, 1, nullptr)", "xcb_request_check(x, c)",
          "xcb_aux_sync(x)", "xcb_get_extension_data(x, &xcb_randr_id)",
          "xcb_render_util_query_formats(x)"}) {
        EXPECT_THAT(endlessWaits(call), SizeIs(1)) << call;
    }
    for (const char* call :
         {"connection.take<xcb_get_geometry_reply_t>(cookie)", "xcb_poll_for_reply(x, 1, &a, &b)",
          "xcb_discard_reply(x, 1)", "xcb_get_geometry(x, window)"}) {
        EXPECT_THAT(endlessWaits(call), IsEmpty()) << call;
    }
}

TEST(HouseTests, TheCoreLinksNothing) {
    EXPECT_STREQ(PELISTRA_CORE_LINKS, "");
}

TEST(HouseTests, ThePackageListIsInOrderAndNamesNothingTwice) {
    const auto packages = linesOf(contentOf(sourceFolder / "packaging" / "packages.txt"));
    EXPECT_THAT(packages, Not(IsEmpty()));
    EXPECT_THAT(packages, Each(MatchesRegex("[a-z0-9][a-z0-9+.-]+([|][a-z0-9+.-]+)*")));
    EXPECT_TRUE(std::ranges::is_sorted(packages, std::ranges::less_equal()));
}

std::set<std::string> switchesOf(const std::string& program) {
    const Ended ended = runToEnd({program, "--help"});
    EXPECT_EQ(ended.status, (ExitStatus{.status = 0})) << program << ": " << ended.output;
    return switchesIn(ended.output);
}

std::vector<std::string> missingFrom(const std::set<std::string>& whole,
                                     const std::set<std::string>& part) {
    std::vector<std::string> missing;
    std::ranges::set_difference(part, whole, std::back_inserter(missing));
    return missing;
}

TEST(HouseTests, TheReadmeNamesEverySwitchAndNoOther) {
    const std::set<std::string> documented =
        switchesInReadme(contentOf(sourceFolder / "README.md"));
    std::set<std::string> existing;
    for (const std::string program : {"pelistra", "pelistra-menubar"}) {
        const std::set<std::string> own = switchesOf((builtPrograms() / program).string());
        EXPECT_THAT(own, Contains("--help")) << program;
        EXPECT_THAT(missingFrom(documented, own), IsEmpty()) << program;
        existing.insert(own.begin(), own.end());
    }
    for (const std::string script : {"run", "test", "bench"}) {
        existing.merge(switchesOf((sourceFolder / script).string()));
    }
    EXPECT_THAT(missingFrom(existing, documented), IsEmpty());
}

TEST(HouseTests, TheChineseReadmeNamesEverySwitchOfThePrograms) {
    const std::set<std::string> documented =
        switchesInReadme(contentOf(sourceFolder / "README.zh-CN.md"));
    std::set<std::string> existing = switchesOf((sourceFolder / "run").string());
    for (const std::string program : {"pelistra", "pelistra-menubar"}) {
        const std::set<std::string> own = switchesOf((builtPrograms() / program).string());
        EXPECT_THAT(missingFrom(documented, own), IsEmpty()) << program;
        existing.insert(own.begin(), own.end());
    }
    EXPECT_THAT(missingFrom(existing, documented), IsEmpty());
}

TEST(HouseTests, EveryLinkInTheDocumentsLeadsSomewhere) {
    std::vector<std::filesystem::path> documents;
    for (const auto& folder : {sourceFolder, sourceFolder / "docs"}) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == ".md") {
                documents.push_back(entry.path());
            }
        }
    }
    ASSERT_THAT(documents, Contains(sourceFolder / "README.md"));
    for (const auto& document : documents) {
        for (const std::string& link : localLinksIn(contentOf(document))) {
            EXPECT_TRUE(std::filesystem::exists(document.parent_path() / link))
                << document.filename() << " links to " << link;
        }
    }
}

TEST(HouseTests, LinksAreReadFromTexts) {
    EXPECT_THAT(localLinksIn("![a](docs/a.png) [b](b.md#part) [c](https://c.org/d) [d](#e)"),
                ElementsAre("docs/a.png", "b.md"));
}

TEST(HouseTests, SwitchesAreReadFromTexts) {
    EXPECT_THAT(switchesIn("  --scale N  (see `--theme`)\n--tour|--nested"),
                ElementsAre("--nested", "--scale", "--theme", "--tour"));
    EXPECT_THAT(switchesIn("a --- b, x--y, -z"), IsEmpty());
    EXPECT_THAT(switchesInReadme("    cmake --preset release\nuse --tour\n"),
                ElementsAre("--tour"));
}

} // namespace
} // namespace pelistra::testing
