#include "platform/linux/programs/DesktopEntries.h"
#include "platform/linux/programs/DesktopEntry.h"
#include "platform/linux/programs/Launcher.h"
#include "platform/linux/programs/ProcessFacts.h"
#include "platform/linux/settings/KeyFile.h"
#include "tests/desktop/harness/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

namespace pelistra::testing {
namespace {

using linux::busPathOf;
using linux::commandOf;
using linux::DesktopEntries;
using linux::DesktopEntry;
using linux::flatpakIdIn;
using linux::invokedNameIn;
using linux::parseDesktopEntry;
using linux::programOf;
using linux::snapIdIn;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

DesktopEntry withExec(const std::string& exec) {
    DesktopEntry entry;
    entry.name = "Some Name";
    entry.icon = "icon";
    entry.file = "/a/b.desktop";
    entry.exec = exec;
    return entry;
}

std::vector<std::string> command(const std::string& exec) {
    return commandOf(withExec(exec));
}

TEST(DesktopEntryText, NamesAreInTheClosestLanguage) {
    const std::string text = "[Desktop Entry]\nType=Application\nName=Sound\nName[zh]=声音\n"
                             "Name[zh_CN]=音量\nName[de]=\xff\n";
    for (const auto& [locale, name] :
         std::initializer_list<std::pair<const char*, const char*>>{{"zh_CN.UTF-8@pinyin", "音量"},
                                                                    {"zh_TW.UTF-8", "声音"},
                                                                    {"de_AT.UTF-8", "Sound"},
                                                                    {"C", "Sound"}}) {
        const auto entry = parseDesktopEntry(text, locale);
        ASSERT_TRUE(entry.has_value()) << locale;
        EXPECT_EQ(entry->name, name) << locale;
    }
}

TEST(DesktopEntryText, ReadsWhatTheOrganiserNeeds) {
    const auto entry = parseDesktopEntry("# a comment\n"
                                         "[Desktop Entry]\r\n"
                                         "Type=Application\n"
                                         "Name=Sound\n"
                                         "Name[zh]=声音\n"
                                         "Name[zh_CN] = 音量\n"
                                         "Icon=sound\n"
                                         "Exec=mixer --tray\n"
                                         "TryExec=mixer\n"
                                         "Path=/srv\n"
                                         "StartupWMClass=Mixer\n"
                                         "Terminal=true\n"
                                         "DBusActivatable=true\n"
                                         "NoDisplay=true\n"
                                         "[Desktop Action Mute]\n"
                                         "Name=Mute\n"
                                         "Exec=mixer --mute\n",
                                         "zh_CN.UTF-8");
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->name, "音量");
    EXPECT_EQ(entry->icon, "sound");
    EXPECT_EQ(entry->exec, "mixer --tray");
    EXPECT_EQ(entry->tryExec, "mixer");
    EXPECT_EQ(entry->workingFolder, "/srv");
    EXPECT_EQ(entry->startupWmClass, "Mixer");
    EXPECT_TRUE(entry->terminal);
    EXPECT_TRUE(entry->dbusActivatable);
    EXPECT_TRUE(entry->noDisplay);
    EXPECT_FALSE(entry->hidden);
}

TEST(DesktopEntryText, WhatIsNoEntryIsRefused) {
    const std::string good = "[Desktop Entry]\nType=Application\nName=x\n";
    EXPECT_TRUE(parseDesktopEntry(good).has_value());
    for (const std::string& bad :
         {std::string(), std::string("[Desktop Entry]\nType=Link\nName=x\n"),
          std::string("[Desktop Entry]\nType=Application\n"), std::string(10'000, '['),
          "Name=before any group\n" + good, good + "no equals sign\n", good + "=no key\n",
          std::string("[Desktop Entry]\nType=Application\nName=\xff\n")}) {
        EXPECT_EQ(parseDesktopEntry(bad), std::nullopt) << bad;
    }
}

TEST(DesktopEntryText, UndoesEscapesAndMakesNamesPresentable) {
    const auto entry = parseDesktopEntry(
        "[Desktop Entry]\nType=Application\nName=a\\sb\\\\c\\nd\nExec=x \\\\\"y\\q\n");
    ASSERT_TRUE(entry.has_value());
    EXPECT_EQ(entry->name, "a b\\c d");
    EXPECT_EQ(entry->exec, "x \\\"y\\q");
}

TEST(DesktopEntryText, AnIconIsAWholePathOrAName) {
    const auto icon = [](const std::string& text) {
        const auto entry =
            parseDesktopEntry("[Desktop Entry]\nType=Application\nName=x\nIcon=" + text + "\n");
        return entry ? entry->icon : "no entry";
    };
    EXPECT_EQ(icon("mixer"), "mixer");
    EXPECT_EQ(icon("org.example.Mixer-1_2"), "org.example.Mixer-1_2");
    EXPECT_EQ(icon("/usr/share/pixmaps/mixer.png"), "/usr/share/pixmaps/mixer.png");
    EXPECT_EQ(icon("../../home/somebody/picture"), "");
    EXPECT_EQ(icon("apps/mixer"), "");
    EXPECT_EQ(icon("a\\nb"), "");
    EXPECT_EQ(icon("\xff"), "");
}

TEST(DesktopEntryText, ZeroBytesMakeItNoText) {
    const std::string text = "[Desktop Entry]\nType=Application\nName=x\nExec=/bin/sh";
    EXPECT_TRUE(parseDesktopEntry(text).has_value());
    EXPECT_EQ(parseDesktopEntry(text + '\0' + "-c"), std::nullopt);
    EXPECT_EQ(parseDesktopEntry(text + '\0'), std::nullopt);
}

TEST(DesktopEntryExec, WhatIsQuotedComesBack) {
    for (const std::string& argument :
         {std::string("plain"), std::string(), std::string("100% %% %c"),
          std::string(R"(a"b$c`d\e)"), std::string("it's"), std::string("two\nlines\tand\r")}) {
        linux::KeyFile file;
        file.setText("Desktop Entry", "Type", "Application");
        file.setText("Desktop Entry", "Name", "x");
        file.setText("Desktop Entry", "Exec", "p " + linux::quotedForExec(argument));
        const auto entry = parseDesktopEntry(file.wholeText());
        ASSERT_TRUE(entry.has_value());
        EXPECT_THAT(commandOf(*entry), ElementsAre("p", argument));
    }
}

TEST(DesktopEntryExec, SplitsIntoArguments) {
    EXPECT_THAT(command("program"), ElementsAre("program"));
    EXPECT_THAT(command("  program   --a\tb "), ElementsAre("program", "--a", "b"));
    EXPECT_THAT(command("\"a program\" \"two words\" \"\""),
                ElementsAre("a program", "two words", ""));
    EXPECT_THAT(command(R"(p "a \"quoted\" \`tick\` \$HOME \\ slash \q")"),
                ElementsAre("p", R"(a "quoted" `tick` $HOME \ slash \q)"));
}

TEST(DesktopEntryExec, LeavesShellCharactersAlone) {
    EXPECT_THAT(command("p $HOME;rm -rf ~ | x > y"),
                ElementsAre("p", "$HOME;rm", "-rf", "~", "|", "x", ">", "y"));
}

TEST(DesktopEntryExec, ReplacesFieldCodes) {
    EXPECT_THAT(command("p %f %F %u %U %d %D %n %N %v %m"), ElementsAre("p"));
    EXPECT_THAT(command("p %i --title %c %k 100%%"),
                ElementsAre("p", "--icon", "icon", "--title", "Some Name", "/a/b.desktop", "100%"));
    EXPECT_THAT(command("p --file=%f"), ElementsAre("p", "--file="));
    EXPECT_THAT(command("p \"100%%\" \"\""), ElementsAre("p", "100%", ""));
    DesktopEntry iconless = withExec("p %i x");
    iconless.icon.clear();
    EXPECT_THAT(commandOf(iconless), ElementsAre("p", "x"));
}

TEST(DesktopEntryExec, RefusesWhatBreaksTheRules) {
    EXPECT_THAT(command(""), IsEmpty());
    EXPECT_THAT(command("%f"), IsEmpty());
    EXPECT_THAT(command("p \"open"), IsEmpty());
    EXPECT_THAT(command("p \"open\\"), IsEmpty());
    EXPECT_THAT(command("p %z"), IsEmpty());
    EXPECT_THAT(command("p %"), IsEmpty());
    EXPECT_THAT(command("A=b p"), IsEmpty());
    EXPECT_THAT(command("\"\" p"), IsEmpty());
}

TEST(DesktopEntryExec, KnowsTheProgramWithoutItsFolder) {
    EXPECT_EQ(programOf(withExec("/usr/bin/mixer --tray %U")), "mixer");
    EXPECT_EQ(programOf(withExec("\"/opt/My App/run me\" x")), "run me");
    EXPECT_EQ(programOf(withExec("")), "");
    EXPECT_EQ(programOf(withExec("\"open")), "");
}

class DesktopEntriesTest : public ::testing::Test {
protected:
    void write(const std::string& path, const std::string& content) {
        const auto file = folder.path() / path;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << content;
    }
    static std::string application(const std::string& name, const std::string& more) {
        return "[Desktop Entry]\nType=Application\nName=" + name + "\n" + more;
    }

    TemporaryFolder folder;
    DesktopEntries entries{{.folders = {folder.path() / "home", folder.path() / "system"}}};
};

TEST_F(DesktopEntriesTest, FindsEntriesInEveryWay) {
    write("system/org.example.Mixer.desktop",
          application("Mixer", "Exec=/usr/bin/mixer-bin %U\nStartupWMClass=MixerWindow\n"));
    write("system/kde/clock.desktop", application("Clock", "Exec=kclock\n"));
    ASSERT_NE(entries.withId("org.example.Mixer"), nullptr);
    EXPECT_EQ(entries.withId("org.example.Mixer")->name, "Mixer");
    EXPECT_EQ(entries.withWindowClass("mixerwindow"), entries.withId("org.example.Mixer"));
    EXPECT_EQ(entries.withWindowClass("mixer"), entries.withId("org.example.Mixer"));
    EXPECT_EQ(entries.withProgram("mixer-bin"), entries.withId("org.example.Mixer"));
    EXPECT_EQ(entries.withId("kde-clock")->name, "Clock");
    EXPECT_EQ(entries.withFile(folder.path() / "system/kde/clock.desktop"),
              entries.withId("kde-clock"));
    EXPECT_EQ(entries.withId("nothing"), nullptr);
    EXPECT_EQ(entries.withId(""), nullptr);
    EXPECT_EQ(entries.withWindowClass(""), nullptr);
    EXPECT_EQ(entries.withProgram(""), nullptr);
}

TEST_F(DesktopEntriesTest, TheUsersOwnEntryComesFirstAndMayHideOne) {
    write("home/a.desktop", application("Mine", "Exec=a\n"));
    write("system/a.desktop", application("Theirs", "Exec=a\n"));
    write("home/b.desktop", "[Desktop Entry]\nHidden=true\n");
    write("system/b.desktop", application("Taken away", "Exec=b\nStartupWMClass=b\n"));
    EXPECT_EQ(entries.withId("a")->name, "Mine");
    EXPECT_EQ(entries.withId("b"), nullptr);
    EXPECT_EQ(entries.withProgram("b"), nullptr);
    EXPECT_EQ(entries.withWindowClass("b"), nullptr);
}

TEST_F(DesktopEntriesTest, AnEntryForMenusComesBeforeOneThatIsNot) {
    write("system/a-helper.desktop", application("Helper", "Exec=a\nNoDisplay=true\n"));
    write("system/z.desktop", application("Program", "Exec=a\n"));
    EXPECT_EQ(entries.withProgram("a")->name, "Program");
}

TEST_F(DesktopEntriesTest, SurvivesLoopsHugeFilesAndFoldersWithoutEnd) {
    write("system/good.desktop", application("Good", "Exec=good\n"));
    write("system/huge.desktop",
          application("Huge", "Comment=" + std::string(linux::desktopEntryByteLimit, 'x')));
    std::filesystem::create_directory_symlink("..", folder.path() / "system/loop");
    std::filesystem::create_symlink("self.desktop", folder.path() / "system/self.desktop");
    std::filesystem::create_directory(folder.path() / "system/folder.desktop");
    write("system/1/2/3/4/5/6/deep.desktop", application("Deep", "Exec=deep\n"));
    EXPECT_NE(entries.withId("good"), nullptr);
    EXPECT_EQ(entries.withId("huge"), nullptr);
    EXPECT_EQ(entries.withId("self"), nullptr);
    EXPECT_EQ(entries.withProgram("deep"), nullptr);
}

TEST(ProcessNames, AreWhatPeopleStarted) {
    using namespace std::string_literals;
    EXPECT_EQ(invokedNameIn("/usr/bin/mixer\0--tray\0"s), "mixer");
    EXPECT_EQ(invokedNameIn("/usr/bin/python3.11\0-u\0/opt/applet.py\0x\0"s), "applet.py");
    EXPECT_EQ(invokedNameIn("wish\0script.tcl\0"s), "script.tcl");
    EXPECT_EQ(invokedNameIn("python3\0"s), "python3");
    EXPECT_EQ(invokedNameIn(""), "");
}

TEST(ProcessNames, KnowSandboxes) {
    EXPECT_EQ(flatpakIdIn("[Application]\nname=org.example.App\nruntime=x\n"), "org.example.App");
    EXPECT_EQ(flatpakIdIn("[Instance]\nname=no\n"), "");
    EXPECT_EQ(flatpakIdIn(""), "");
    EXPECT_EQ(snapIdIn("0::/user.slice/app.slice/"
                       "snap.firefox.firefox-0a1b2c3d-0a1b-0a1b-0a1b-0a1b2c3d4e5f.scope\n"),
              "firefox_firefox");
    EXPECT_EQ(snapIdIn("0::/system.slice/snap.lxd.daemon.service\n"), "lxd_daemon");
    EXPECT_EQ(snapIdIn("0::/user.slice/snap.broken\n"), "");
    EXPECT_EQ(snapIdIn("0::/user.slice\n"), "");
}

TEST(BusPaths, FollowTheId) {
    EXPECT_EQ(busPathOf("org.example.My-App"), "/org/example/My_App");
    EXPECT_EQ(busPathOf("nodots"), "");
    EXPECT_EQ(busPathOf("with space.x"), "");
    EXPECT_EQ(busPathOf(""), "");
}

} // namespace
} // namespace pelistra::testing
