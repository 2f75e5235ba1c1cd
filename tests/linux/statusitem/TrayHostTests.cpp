#include "platform/linux/statusitem/TrayHost.h"

#include "platform/linux/icons/TrayReader.h"
#include "platform/x11/Properties.h"
#include "tests/desktop/harness/Connect.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/linux/statusitem/RespondingTray.h"
#include "tests/platform/FakeLogSink.h"

#include <array>
#include <csignal>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gmock/gmock.h>

namespace pelistra::testing {

namespace {

using ::testing::Optional;

class TrayChangesTest : public ::testing::Test {
protected:
    // The count while nothing happens.
    [[nodiscard]] std::optional<std::uint64_t> count() {
        const auto changes = host_.changesOf(tray_->owner());
        EXPECT_TRUE(changes.has_value());
        EXPECT_EQ(host_.changesOf(tray_->owner()), changes);
        return changes;
    }
    // Whether what has been done is counted, however long the server takes to tell.
    [[nodiscard]] bool isCountedAfter(std::optional<std::uint64_t> before) {
        return waitFor([&] { return host_.changesOf(tray_->owner()) != before; });
    }

    PrivateDisplay display_;
    Journal journal_;
    FakeLogSink log_{journal_};
    std::unique_ptr<x11::Connection> connection_ = connect(display_);
    linux::EventPump pump_{*connection_, log_};
    linux::TrayHost host_{*connection_, pump_, log_};
    std::optional<RespondingTray> tray_;
};

TEST_F(TrayChangesTest, AreHeardOnlyOfTheTrayThatIsThere) {
    EXPECT_EQ(host_.changesOf(0), std::nullopt);
    tray_.emplace(display_.name());
    EXPECT_EQ(host_.changesOf(tray_->owner()), std::nullopt) << "nobody has looked yet";
    host_.start();
    EXPECT_TRUE(host_.changesOf(tray_->owner()).has_value());
    EXPECT_EQ(host_.changesOf(tray_->owner() + 1), std::nullopt);
}

TEST_F(TrayChangesTest, AreCountedBeforeAnythingIsDispatched) {
    tray_.emplace(display_.name());
    host_.start();
    for (const std::string property : {"_PELISTRA_MENUBAR_SERIAL", "_PELISTRA_MENUBAR_SCALE"}) {
        const auto before = count();
        x11::setWords(tray_->x().connection(), tray_->owner(), tray_->x().atom(property),
                      XCB_ATOM_CARDINAL, std::array<std::uint32_t, 1>{200});
        tray_->x().sync();
        EXPECT_TRUE(isCountedAfter(before)) << property;
        EXPECT_THAT(host_.scale(), 1) << "described anew in its turn only";
    }
    pump_.drain();
    EXPECT_EQ(host_.scale(), 2);
}

TEST_F(TrayChangesTest, WaitForAServerThatDoesNotAnswer) {
    tray_.emplace(display_.name());
    host_.start();
    ASSERT_EQ(host_.scale(), 1);
    int changes = 0;
    const auto observer = host_.observe([&](linux::TrayHost::Change) { ++changes; });
    const auto before = count();
    tray_->setMenuBarScale(200);
    tray_->x().sync();
    ASSERT_TRUE(isCountedAfter(before));
    connection_->setPatience(std::chrono::milliseconds(100));
    ::kill(display_.serverPid(), SIGSTOP);
    pump_.drain();
    EXPECT_EQ(changes, 0);
    ASSERT_TRUE(host_.tray().has_value());
    EXPECT_EQ(host_.scale(), 1) << "what was known";
    ::kill(display_.serverPid(), SIGCONT);
    connection_->setPatience(x11::Connection::startPatience);
    EXPECT_TRUE(waitFor([&] {
        pump_.drain();
        return host_.scale() == 2;
    }));
    EXPECT_GT(changes, 0);
}

TEST_F(TrayChangesTest, IncludeItsEndAndItsSuccessor) {
    tray_.emplace(display_.name());
    host_.start();
    const auto before = count();
    const xcb_window_t first = tray_->owner();
    tray_.reset();
    EXPECT_TRUE(waitFor([&] { return host_.changesOf(first) != before; }));
    EXPECT_TRUE(waitFor([&] {
        pump_.drain();
        return !host_.tray();
    }));
    EXPECT_EQ(host_.changesOf(first), std::nullopt);
    tray_.emplace(display_.name());
    EXPECT_TRUE(waitFor([&] {
        pump_.drain();
        return host_.changesOf(tray_->owner()).has_value();
    }));
}

TEST_F(TrayChangesTest, IncludeTheMonitors) {
    tray_.emplace(display_.name());
    host_.start();
    const auto before = count();
    const auto xrandr =
        display_.start({"xrandr", "--setmonitor", "*Left", "640/100x800/100+0+0", "screen"});
    EXPECT_THAT(xrandr->waitForExit(), Optional(ExitStatus{.status = 0}));
    EXPECT_TRUE(isCountedAfter(before));
}

TEST_F(TrayChangesTest, AreNotHeardInAFlood) {
    tray_.emplace(display_.name());
    host_.start();
    const auto before = count();
    for (int i = 0; i <= linux::EventPump::mostOfOneRound; ++i) {
        x11::setWords(tray_->x().connection(), tray_->owner(),
                      tray_->x().atom("_PELISTRA_MENUBAR_SERIAL"), XCB_ATOM_CARDINAL,
                      std::array{static_cast<std::uint32_t>(i)});
    }
    tray_->x().sync();
    EXPECT_EQ(host_.changesOf(tray_->owner()), std::nullopt);
    EXPECT_TRUE(isCountedAfter(before));
}

// What is listed and what is shown must be measured alike.
TEST_F(TrayChangesTest, TheScaleIsThatOfALook) {
    const auto other = connect(display_);
    linux::TrayReader look(*other);
    const auto expectAlike = [&](double scale, const std::string& what) {
        const auto coordinates = look.coordinates();
        ASSERT_TRUE(coordinates.has_value());
        EXPECT_EQ(coordinates->scale(), scale) << what;
        EXPECT_EQ(host_.scale(), scale) << what;
    };
    XClient client(display_.name());
    for (const std::string type : {"STRING", "UTF8_STRING"}) {
        for (const auto& [text, scale] : {std::pair("Xft.dpi:\t192", 2.0),
                                          {"Xft.dpi: 24", 0.25},
                                          {"Xft.dpi: 23", 1.0},
                                          {"Xft.dpi: 960", 10.0},
                                          {"Xft.dpi: 961", 1.0},
                                          {"Xft.dpi: x", 1.0},
                                          {"", 1.0}}) {
            x11::setText(client.connection(), client.root(), XCB_ATOM_RESOURCE_MANAGER,
                         client.atom(type), text);
            client.sync();
            expectAlike(scale, type + " " + text);
        }
    }
    tray_.emplace(display_.name());
    host_.start();
    for (const auto& [hundredths, scale] :
         {std::pair(50U, 0.5), {150U, 1.5}, {800U, 8.0}, {49U, 1.0}, {801U, 1.0}, {0U, 1.0}}) {
        const auto before = count();
        tray_->setMenuBarScale(hundredths);
        tray_->x().sync();
        ASSERT_TRUE(isCountedAfter(before));
        pump_.drain();
        expectAlike(scale, std::to_string(hundredths));
    }
}

} // namespace

} // namespace pelistra::testing
