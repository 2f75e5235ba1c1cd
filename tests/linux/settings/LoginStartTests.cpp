// What the autostart entry starts.

#include "platform/linux/application/MenuBarStarter.h"

#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/TemporaryFolder.h"

#include <csignal>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class LoginStartTest : public ::testing::Test {
protected:
    LoginStartTest() { OrganiserUnderTest::completeOnboarding(display_); }
    ~LoginStartTest() override {
        // The bar that the organiser started belongs to nobody here.
        if (const auto bar = client_.barWindow(); bar != XCB_WINDOW_NONE && process_ != nullptr) {
            if (const auto pid = client_.claimedProcess(bar)) {
                ::kill(static_cast<pid_t>(*pid), SIGTERM);
            }
        }
    }
    LoginStartTest(const LoginStartTest&) = delete;
    LoginStartTest& operator=(const LoginStartTest&) = delete;

    void startOrganiser() {
        process_ = display_.start({(builtPrograms() / "pelistra").string(), "--start-menu-bar"});
    }

    PrivateDisplay display_;
    XClient client_{display_.name()};
    std::unique_ptr<ChildProcess> process_;
};

TEST_F(LoginStartTest, TheMenuBarIsStartedTooWhereNoTrayIs) {
    startOrganiser();
    EXPECT_TRUE(waitFor([&] { return client_.barItems().size() == 2; })) << process_->output();
    EXPECT_TRUE(process_->waitForOutput("No system tray is there: started"));
}

TEST_F(LoginStartTest, TheMenuBarLivesOnWhenTheOrganiserEnds) {
    startOrganiser();
    ASSERT_TRUE(waitFor([&] { return client_.barItems().size() == 2; })) << process_->output();
    process_->terminate();
    EXPECT_TRUE(waitFor([&] { return client_.barItems().empty(); }));
    EXPECT_NE(client_.trayOwner(), XCB_WINDOW_NONE);
}

TEST_F(LoginStartTest, ATrayThatIsThereIsLeftAlone) {
    const auto trayer = display_.start({"trayer"});
    ASSERT_TRUE(waitFor([&] { return client_.trayOwner() != XCB_WINDOW_NONE; }));
    const xcb_window_t owner = client_.trayOwner();
    startOrganiser();
    const auto longEnough =
        std::chrono::duration_cast<std::chrono::milliseconds>(2 * linux::MenuBarStarter::patience);
    EXPECT_TRUE(staysTrue([&] { return client_.trayOwner() == owner; }, longEnough));
    EXPECT_THAT(process_->output(), Not(HasSubstr("started")));
    EXPECT_TRUE(process_->isRunning());
}

TEST(MenuBarBeside, IsTheProgramInTheSameFolderElseThatOfThePath) {
    const TemporaryFolder folder;
    EXPECT_EQ(linux::menuBarBeside(folder.path() / "pelistra"), "pelistra-menubar");
    std::ofstream(folder.path() / "pelistra-menubar") << "";
    EXPECT_EQ(linux::menuBarBeside(folder.path() / "pelistra"), folder.path() / "pelistra-menubar");
}

} // namespace

} // namespace pelistra::testing
