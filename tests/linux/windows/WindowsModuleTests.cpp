// The module that shows windows, and the organiser that lives without it.

#include "platform/linux/windows/LoadedWindows.h"
#include "tests/desktop/harness/PrivateDisplay.h"
#include "tests/desktop/harness/ProgramsUnderTest.h"
#include "tests/desktop/harness/UserInput.h"
#include "tests/linux/statusitem/RespondingTray.h"

#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace pelistra::testing {

namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;
using Button = UserInput::Button;

constexpr int expandedWidth = 14;
constexpr int collapsedWidth = 2560;
const std::string complaint = "[windows] error: Cannot show a window: ";

std::string librariesOf(const std::filesystem::path& file) {
    const TemporaryFolder folder;
    ChildProcess process({"ldd", file.string()}, {{"PATH", "/usr/bin:/bin"}},
                         folder.path() / "output");
    EXPECT_EQ(process.waitForExit(), (ExitStatus{.status = 0}));
    return process.output();
}

TEST(WindowsModuleTest, OnlyTheModuleIsLinkedWithAToolkit) {
    EXPECT_THAT(librariesOf(builtPrograms() / "pelistra"),
                AllOf(HasSubstr("libglib-2.0"), Not(HasSubstr("libQt"))));
    EXPECT_THAT(librariesOf(builtPrograms() / "pelistra-windows.so"), HasSubstr("libQt6Widgets"));
}

// The program alone in a folder, in a tray that lives in the test.
class WithoutModuleTest : public ::testing::Test {
protected:
    WithoutModuleTest() {
        OrganiserUnderTest::completeOnboarding(display_);
        std::filesystem::create_directories(program_.parent_path());
        std::filesystem::copy_file(builtPrograms() / "pelistra", program_);
    }

    void start(const std::vector<std::string>& options = {}) {
        std::vector<std::string> command{program_.string()};
        command.insert(command.end(), options.begin(), options.end());
        process_ = display_.start(command);
        control_ = tray_.waitForItem("PelistraV3.Control");
        divider_ = tray_.waitForItem("PelistraV3.Divider");
        ASSERT_TRUE(tray_.waitFor(
            [this] { return process_->output().find("Status order") != std::string::npos; }));
    }
    void click(Button button, const UserInput::Modifiers& modifiers = {}) {
        // Longer than the arrow ignores clicks after one that has been seen to do something.
        tray_.serve(std::chrono::milliseconds(350));
        input_.click(centre(tray_.frameOf(control_)), button, modifiers);
    }
    [[nodiscard]] int complaints() const {
        const std::string output = process_->output();
        int count = 0;
        for (auto place = output.find(complaint); place != std::string::npos;
             place = output.find(complaint, place + 1)) {
            ++count;
        }
        return count;
    }
    [[nodiscard]] bool complainsTimes(int count) {
        return tray_.waitFor([this, count] { return complaints() == count; });
    }

    PrivateDisplay display_;
    XClient client_{display_.name()};
    UserInput input_{client_};
    RespondingTray tray_{display_.name()};
    TemporaryFolder folder_;
    std::filesystem::path program_ = folder_.path() / "bin" / "pelistra";
    std::unique_ptr<ChildProcess> process_;
    xcb_window_t control_ = XCB_WINDOW_NONE;
    xcb_window_t divider_ = XCB_WINDOW_NONE;
};

TEST_F(WithoutModuleTest, EverythingButWindowsWorksAndEachClickForOneIsAnError) {
    start();
    click(Button::Left);
    EXPECT_TRUE(tray_.waitForWidth(divider_, collapsedWidth));
    EXPECT_EQ(complaints(), 0);
    click(Button::Left);
    EXPECT_TRUE(complainsTimes(1));
    click(Button::Left);
    EXPECT_TRUE(complainsTimes(2));
    click(Button::Right);
    EXPECT_TRUE(complainsTimes(3));
    click(Button::Left, {keys::alt});
    EXPECT_TRUE(tray_.waitForWidth(divider_, expandedWidth));
    EXPECT_THAT(process_->output(), HasSubstr("pelistra-windows.so: cannot open shared object"));
    EXPECT_EQ(process_->terminate(), (ExitStatus{.status = 0})) << process_->output();
}

TEST_F(WithoutModuleTest, AModuleThatDoesNotLoadIsNoneEither) {
    std::ofstream(program_.parent_path() / "pelistra-windows.so") << "no library\n";
    start({"--show-settings"});
    EXPECT_TRUE(complainsTimes(1));
    EXPECT_THAT(process_->output(), HasSubstr("pelistra-windows.so: "));
    click(Button::Left);
    EXPECT_TRUE(tray_.waitForWidth(divider_, collapsedWidth));
    EXPECT_EQ(process_->terminate(), (ExitStatus{.status = 0})) << process_->output();
}

TEST_F(WithoutModuleTest, AModuleThatComesLaterIsFoundAtTheNextClick) {
    start();
    click(Button::Right);
    EXPECT_TRUE(complainsTimes(1));
    const auto module = linux::windowsModuleFor(program_);
    std::filesystem::create_directories(module.parent_path());
    std::filesystem::copy_file(builtPrograms() / module.filename(), module);
    click(Button::Left);
    ASSERT_TRUE(tray_.waitForWidth(divider_, collapsedWidth));
    click(Button::Left);
    EXPECT_TRUE(tray_.waitFor([this] {
        for (const xcb_window_t window : client_.children(client_.root())) {
            if (client_.isViewable(window) && client_.title(window) == "Pelistra 第二行") {
                return true;
            }
        }
        return false;
    })) << process_->output();
    EXPECT_EQ(complaints(), 1);
    EXPECT_EQ(process_->terminate(), (ExitStatus{.status = 0})) << process_->output();
}

} // namespace

} // namespace pelistra::testing
