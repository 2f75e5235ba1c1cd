#include "app/AppDelegate.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/application/SingleInstance.h"
#include "platform/linux/commandline/CommandLine.h"
#include "platform/linux/commandline/ListItems.h"
#include "platform/posix/Translation.h"
#include "platform/x11/Connection.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace pelistra;
using namespace pelistra::linux;
using posix::translated;

constexpr int usageStatus = 2;

int refuse(const std::string& message) {
    std::cerr << "pelistra: " << message << '\n';
    return EXIT_FAILURE;
}

// What this start was to show is shown by the organiser that runs already.
int handOverTo(SingleInstance& other, const std::vector<std::string>& arguments) {
    const auto has = [&arguments](std::string_view wanted) {
        return std::ranges::find(arguments, wanted) != arguments.end();
    };
    const bool settings = has(showSettingsSwitch);
    if (!settings && !has(showOnboardingSwitch)) {
        std::cerr << "pelistra: " << translated("already running on this display") << '\n';
        return EXIT_SUCCESS;
    }
    const auto request =
        settings ? SingleInstance::Request::ShowSettings : SingleInstance::Request::ShowOnboarding;
    return other.handOver(request) ? EXIT_SUCCESS
                                   : refuse(translated("already running, but it does not answer"));
}

int runOrganiser(x11::Connection& connection, SingleInstance& instance,
                 const std::vector<std::string>& arguments) {
    LinuxPlatform platform(connection, instance, arguments);
    AppDelegate delegate(platform.platform());
    instance.setRequestHandler([&delegate](SingleInstance::Request request) {
        if (request == SingleInstance::Request::ShowSettings) {
            delegate.showSettings();
        } else {
            delegate.showOnboarding();
        }
    });
    delegate.applicationDidFinishLaunching();
    if (connection.isStalled()) {
        return refuse(x11::Connection::noAnswer());
    }
    platform.run();
    instance.setRequestHandler({});
    return EXIT_SUCCESS;
}

int start(const std::vector<std::string>& arguments) {
    x11::Connection::Failure failure;
    const auto connection = x11::Connection::open({}, failure);
    if (connection == nullptr) {
        return refuse(failure.message);
    }
    connection->setPatience(x11::Connection::startPatience);
    SingleInstance instance(*connection);
    switch (instance.claim()) {
    case SingleInstance::Claim::Claimed:
        return runOrganiser(*connection, instance, arguments);
    case SingleInstance::Claim::Taken:
        return handOverTo(instance, arguments);
    case SingleInstance::Claim::Failed:
        break;
    }
    return refuse(x11::Connection::noAnswer());
}

} // namespace

int main(int argc, char* argv[]) {
    const std::vector<std::string> arguments(argv, argv + argc);
    const auto commandLine = parseCommandLine(arguments, PELISTRA_VERSION);
    switch (commandLine.request) {
    case CommandLine::Request::Run:
        return start(arguments);
    case CommandLine::Request::Refuse:
        std::cerr << commandLine.message;
        return usageStatus;
    case CommandLine::Request::ListItems:
        return listItems(std::cout, std::cerr, false);
    case CommandLine::Request::ListItemsAsJson:
        return listItems(std::cout, std::cerr, true);
    case CommandLine::Request::Help:
    case CommandLine::Request::Version:
        break;
    }
    std::cout << commandLine.message;
    return EXIT_SUCCESS;
}
