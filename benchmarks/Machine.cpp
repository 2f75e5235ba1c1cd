#include "benchmarks/Machine.h"

#include <array>
#include <ctime>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <thread>

#include <sys/utsname.h>

namespace pelistra::testing {

namespace {

// The value of the first line of a file that begins with a key.
std::string valueIn(const std::string& file, const std::string& key, char separator) {
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        const std::size_t place = line.find(separator);
        if (line.starts_with(key) && place != std::string::npos) {
            const std::size_t begin = line.find_first_not_of(" \t\"", place + 1);
            const std::size_t end = line.find_last_not_of(" \t\"");
            return begin == std::string::npos ? "" : line.substr(begin, end - begin + 1);
        }
    }
    return "unknown";
}

std::string memory() {
    constexpr double kibibytesOfGibibyte = 1024.0 * 1024;
    std::ostringstream out;
    std::istringstream value(valueIn("/proc/meminfo", "MemTotal", ':'));
    double kibibytes = 0;
    value >> kibibytes;
    out << std::fixed << std::setprecision(1) << kibibytes / kibibytesOfGibibyte << " GiB";
    return out.str();
}

std::string today() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    ::gmtime_r(&now, &parts);
    std::ostringstream out;
    out << std::put_time(&parts, "%F");
    return out.str();
}

} // namespace

std::string describeMachine() {
    utsname system{};
    ::uname(&system);
    std::ostringstream out;
    out << "- " << today() << ", Pelistra " << PELISTRA_VERSION << ", " << PELISTRA_BUILD_TYPE
        << " build, " << PELISTRA_COMPILER << ", Qt " << PELISTRA_QT_VERSION << "\n"
        << "- " << valueIn("/proc/cpuinfo", "model name", ':') << ", "
        << std::thread::hardware_concurrency() << " cores, " << memory() << "\n"
        << "- " << valueIn("/etc/os-release", "PRETTY_NAME", '=') << ", Linux " << system.release
        << ", private X servers (Xvfb, 1920 x 1080), openbox\n"
        << describeLoad();
    return out.str();
}

std::string describeLoad() {
    std::ifstream stream("/proc/loadavg");
    std::array<std::string, 3> loads;
    stream >> loads[0] >> loads[1] >> loads[2];
    return "- load of the last 1, 5, 15 minutes: " + loads[0] + ", " + loads[1] + ", " + loads[2] +
           "\n";
}

} // namespace pelistra::testing
