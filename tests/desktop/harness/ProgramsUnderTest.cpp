#include "tests/desktop/harness/ProgramsUnderTest.h"

#include <fstream>
#include <stdexcept>

namespace pelistra::testing {

namespace {

constexpr int longerThanAnyOpenDivider = 400;
constexpr double hundredths = 100;

std::vector<std::string> commandOf(const std::string& program,
                                   const std::vector<std::string>& options) {
    std::vector<std::string> command{(builtPrograms() / program).string()};
    command.insert(command.end(), options.begin(), options.end());
    return command;
}

} // namespace

std::filesystem::path builtPrograms() {
    return PELISTRA_BUILD_BIN_FOLDER;
}

BarUnderTest::BarUnderTest(PrivateDisplay& display, XClient& client,
                           const std::vector<std::string>& options)
    : client_(client), process_(display.start(commandOf("pelistra-menubar", options))) {
    // A bar that goes while openbox still takes its window hides the next one, which may get the
    // same window number.
    const bool up = waitFor([this] {
        const xcb_window_t window = client_.barWindow();
        return (window != XCB_WINDOW_NONE && client_.isViewable(window)) || !process_->isRunning();
    });
    if (!up || !process_->isRunning()) {
        throw std::runtime_error("pelistra-menubar did not come up: " + process_->output());
    }
}

double BarUnderTest::scale() {
    const std::vector<std::uint32_t> values =
        client_.words(client_.trayOwner(), "_PELISTRA_MENUBAR_SCALE");
    return values.empty() ? 1 : values.front() / hundredths;
}

OrganiserUnderTest::OrganiserUnderTest(PrivateDisplay& display, XClient& client,
                                       const std::vector<std::string>& options, WaitForItems wait)
    : client_(client), process_(display.start(commandOf("pelistra", options))) {
    if (wait == WaitForItems::No) {
        return;
    }
    const bool up =
        waitFor([this] { return (controlFrame() && dividerFrame()) || !process_->isRunning(); });
    if (!up || !process_->isRunning()) {
        throw std::runtime_error("pelistra did not come up: " + process_->output());
    }
}

std::optional<WindowFrame> OrganiserUnderTest::controlFrame() {
    const auto window = client_.barItem(controlName);
    return window ? client_.frame(*window) : std::nullopt;
}

std::optional<WindowFrame> OrganiserUnderTest::dividerFrame() {
    const auto window = client_.barItem(dividerName);
    return window ? client_.frame(*window) : std::nullopt;
}

bool OrganiserUnderTest::isCollapsed() {
    const auto place = dividerFrame();
    return place && place->width >= longerThanAnyOpenDivider;
}

void OrganiserUnderTest::completeOnboarding(const PrivateDisplay& display) {
    const std::filesystem::path folder = display.configFolder() / "pelistra";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / "defaults")
        << "[Defaults]\nhasCompletedOnboarding." << PELISTRA_VERSION << "=true\n";
}

} // namespace pelistra::testing
