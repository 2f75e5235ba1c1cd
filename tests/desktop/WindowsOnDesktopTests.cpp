// Settings and guide on a whole desktop, worked with mouse and keyboard.

#include "tests/desktop/harness/AccessibleTree.h"
#include "tests/desktop/harness/Desktop.h"
#include "tests/desktop/harness/FileContent.h"
#include "tests/desktop/harness/WindowsUnderTest.h"

#include <csignal>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;

constexpr const char* loginSwitch = "登录时启动 Pelistra";

class WindowsOnDesktopTests : public ::testing::Test {
protected:
    void SetUp() override {
        AccessibleTree::letProgramsSpeak(desktop_.display());
        desktop_.startBar();
    }

    void openSettings() {
        desktop_.startOrganiser({"--show-settings"});
        ASSERT_TRUE(waitFor([&] { return window(settingsTitle).has_value(); })) << log();
        ASSERT_TRUE(waitFor([&] { return windows_.says(loginSwitch); }));
    }
    void startFresh() {
        std::filesystem::remove(defaults());
        desktop_.startOrganiser();
        ASSERT_TRUE(waitFor([&] { return windows_.says("第 1 步，共 4 步"); })) << log();
    }
    [[nodiscard]] std::string log() { return desktop_.organiser().process().output(); }
    [[nodiscard]] std::optional<xcb_window_t> window(const char* title) {
        return desktop_.x().managedWindow(title);
    }
    [[nodiscard]] std::filesystem::path defaults() {
        return desktop_.display().configFolder() / "pelistra" / "defaults";
    }
    [[nodiscard]] std::filesystem::path autostart() {
        return desktop_.display().configFolder() / "autostart";
    }
    [[nodiscard]] bool isOn() { return windows_.isChecked(loginSwitch).value_or(false); }
    [[nodiscard]] bool isActive(const char* title) {
        const auto shown = window(title);
        return shown &&
               desktop_.x().words(desktop_.x().root(), "_NET_ACTIVE_WINDOW") == std::vector{*shown};
    }

    Desktop desktop_;
    AccessibleTree tree_{desktop_.display()};
    WindowsUnderTest windows_{desktop_, tree_};
};

TEST_F(WindowsOnDesktopTests, HaveTheApplicationsIconAlsoWhenItIsNotInstalled) {
    openSettings();
    const auto words = desktop_.x().words(*window(settingsTitle), "_NET_WM_ICON");
    // Each picture is its width, its height, and its pixels.
    std::vector<std::uint32_t> sides;
    for (std::size_t at = 0; at + 1 < words.size(); at += 2 + words[at] * words[at + 1]) {
        EXPECT_EQ(words[at], words[at + 1]);
        sides.push_back(words[at]);
        // Only so much of the property is read that the last one's pixels are missing.
        const std::size_t middle = at + 2 + words[at] * words[at] / 2 + words[at] / 2;
        EXPECT_TRUE(middle >= words.size() || words[middle] >> 24U == 0xffU) << words[at];
    }
    EXPECT_THAT(sides, UnorderedElementsAre(16, 24, 32, 48, 64, 128));
}

TEST_F(WindowsOnDesktopTests, TheSwitchWritesTheAutostartEntryAndTakesItAway) {
    openSettings();
    const std::filesystem::path entry = autostart() / "pelistra.desktop";
    ASSERT_TRUE(windows_.clickSwitch(loginSwitch));
    EXPECT_TRUE(waitFor([&] { return isOn() && std::filesystem::exists(entry); }));
    EXPECT_THAT(contentOf(entry), HasSubstr((builtPrograms() / "pelistra").string()));
    ASSERT_TRUE(windows_.clickSwitch(loginSwitch));
    EXPECT_TRUE(waitFor([&] { return !isOn() && !std::filesystem::exists(entry); }));
}

TEST_F(WindowsOnDesktopTests, TheSwitchGoesBackAndSaysWhyWhereNoEntryCanBeWritten) {
    std::ofstream(autostart()) << "a file where a folder should be\n";
    openSettings();
    ASSERT_TRUE(windows_.clickSwitch(loginSwitch));
    EXPECT_TRUE(waitFor([&] { return windows_.says("Not a directory"); })) << log();
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(std::filesystem::is_regular_file(autostart()));
}

TEST_F(WindowsOnDesktopTests, TheGuideTellsOfItInAnAlertThatReturnPutsAway) {
    std::ofstream(autostart()) << "a file where a folder should be\n";
    startFresh();
    ASSERT_TRUE(waitFor([&] { return isActive(onboardingTitle); }));
    for (const char* caption : {"第 2 步", "第 3 步"}) {
        desktop_.input().tapKey(keys::enter);
        ASSERT_TRUE(waitFor([&] { return windows_.says(caption); }));
    }
    ASSERT_TRUE(windows_.clickSwitch(loginSwitch));
    EXPECT_TRUE(waitFor([&] { return windows_.says("Not a directory"); })) << log();
    desktop_.input().tapKey(keys::enter);
    EXPECT_TRUE(waitFor([&] { return !windows_.says("Not a directory"); }));
    EXPECT_FALSE(isOn());
    EXPECT_TRUE(windows_.says("第 3 步"));
}

TEST_F(WindowsOnDesktopTests, TheGuideComesOnceForEachVersion) {
    startFresh();
    for (const char* caption : {"第 1 步", "第 2 步", "第 3 步", "第 4 步"}) {
        ASSERT_TRUE(waitFor([&] { return windows_.says(caption) && isActive(onboardingTitle); }));
        desktop_.input().tapKey(keys::enter);
    }
    ASSERT_TRUE(waitFor([&] { return desktop_.organiserWindows().empty(); })) << log();
    ASSERT_TRUE(waitFor([&] {
        return contentOf(defaults()).find("hasCompletedOnboarding.") != std::string::npos;
    }));
    desktop_.organiser().process().terminate();
    desktop_.startOrganiser();
    EXPECT_TRUE(staysTrue([&] { return desktop_.organiserWindows().empty(); },
                          std::chrono::milliseconds(800)));
    desktop_.organiser().process().terminate();
    std::ofstream(defaults()) << "[Defaults]\nhasCompletedOnboarding.0.0.1=true\n";
    desktop_.startOrganiser();
    EXPECT_TRUE(waitFor([&] { return window(onboardingTitle).has_value(); })) << log();
}

TEST_F(WindowsOnDesktopTests, TheSettingsShrinkToTheirLeastSizeAndTheGuideNotAtAll) {
    openSettings();
    // Of WM_NORMAL_HINTS: least and greatest width and height.
    constexpr std::size_t leastAt = 5;
    constexpr std::size_t greatestAt = 7;
    const auto bound = [&](const char* title, std::size_t at) {
        const auto hints = desktop_.x().words(*window(title), "WM_NORMAL_HINTS");
        return std::pair(hints.at(at), hints.at(at + 1));
    };
    EXPECT_EQ(bound(settingsTitle, leastAt), (std::pair(600U, 520U)));
    ASSERT_TRUE(windows_.click("重新查看使用引导"));
    ASSERT_TRUE(waitFor([&] { return window(onboardingTitle).has_value(); }));
    const std::pair<std::uint32_t, std::uint32_t> size(onboardingWidth, onboardingHeight);
    EXPECT_EQ(bound(onboardingTitle, leastAt), size);
    EXPECT_EQ(bound(onboardingTitle, greatestAt), size);
}

TEST_F(WindowsOnDesktopTests, TheLastButtonOfTheSettingsEndsTheOrganiser) {
    openSettings();
    ASSERT_TRUE(windows_.click("退出 Pelistra"));
    EXPECT_EQ(desktop_.organiser().process().waitForExit(), (ExitStatus{.status = 0})) << log();
}

} // namespace
} // namespace pelistra::testing
