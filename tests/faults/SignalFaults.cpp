#include "tests/desktop/harness/FileContent.h"
#include "tests/faults/Suite.h"

#include <algorithm>
#include <csignal>
#include <memory>
#include <stdexcept>
#include <thread>

namespace pelistra::testing {

namespace {

// What a user, or whoever ends the session, waits for a program to end.
constexpr std::chrono::milliseconds promise{2000};
// The organiser asks every two seconds how things stand.
constexpr std::chrono::milliseconds someRefreshes{4500};

constexpr std::chrono::milliseconds startTime{700};

enum class Silence : std::uint8_t { Stopped, Grabbed };
enum class Moment : std::uint8_t { Start, Idle, Collapse, RowOpen };

// The X server answers nobody as long as this object lives.
class SilentServer {
public:
    SilentServer(PrivateDisplay& display, Silence silence)
        : process_(silence == Silence::Stopped ? display.serverPid() : 0) {
        if (process_ != 0) {
            ::kill(process_, SIGSTOP);
            return;
        }
        grabber_ = std::make_unique<XClient>(display.name());
        xcb_grab_server(grabber_->get());
        grabber_->sync();
    }
    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;
    ~SilentServer() {
        if (process_ != 0) {
            ::kill(process_, SIGCONT);
        }
    }

private:
    pid_t process_;
    std::unique_ptr<XClient> grabber_;
};

std::string nameOf(Silence silence) {
    return silence == Silence::Stopped ? "the X server is stopped" : "the X server is grabbed";
}

std::string nameOf(Moment moment) {
    switch (moment) {
    case Moment::Start:
        return "at start";
    case Moment::Idle:
        return "idle";
    case Moment::Collapse:
        return "during a collapse";
    case Moment::RowOpen:
        return "row open";
    }
    return "";
}

void bringTo(Bench& bench, Moment moment) {
    switch (moment) {
    case Moment::Start:
    case Moment::Idle:
    case Moment::Collapse:
        bench.bringInto(Situation::Expanded);
        break;
    case Moment::RowOpen:
        bench.bringInto(Situation::RowOpen);
        break;
    }
    if (moment == Moment::Collapse && !bench.desktop().clickControl()) {
        throw std::runtime_error("there is no arrow");
    }
}

// Sends the signal, and holds the program to what users are promised.
void end(ChildProcess& process, int signal) {
    process.signal(signal);
    const auto status = process.waitForExit(promise);
    if (!status) {
        throw std::runtime_error(process.name() + " does not end: " + process.output());
    }
    if (status->status.value_or(0) != 0 || (!status->status && status->killedBySignal != signal)) {
        throw std::runtime_error(process.name() + " ends in disorder: " + process.output());
    }
}

void startAndEnd(PrivateDisplay& display, const char* program, int signal) {
    const auto process = display.start({(builtPrograms() / program).string()});
    // Until it waits for the server.
    letPass(startTime);
    end(*process, signal);
}

Fault programsAreEnded(Silence silence, Moment moment, int signal) {
    return {.name = std::string(signal == SIGTERM ? "SIGTERM" : "SIGINT") + " while " +
                    nameOf(silence) + ", " + nameOf(moment),
            .isInShortForm = signal == SIGTERM && moment == Moment::RowOpen,
            .happen = [=](Bench& bench) {
                bringTo(bench, moment);
                Desktop& desktop = bench.desktop();
                const auto defaults = desktop.display().configFolder() / "pelistra" / "defaults";
                const std::string before = contentOf(defaults);
                if (moment == Moment::Start) {
                    desktop.organiser().process().terminate();
                    desktop.bar().process().terminate();
                }
                {
                    const SilentServer silent(desktop.display(), silence);
                    if (moment == Moment::Start) {
                        startAndEnd(desktop.display(), "pelistra-menubar", signal);
                        startAndEnd(desktop.display(), "pelistra", signal);
                    } else {
                        end(desktop.organiser().process(), signal);
                        end(desktop.bar().process(), signal);
                    }
                }
                if (contentOf(defaults) != before) {
                    throw std::runtime_error("defaults are lost: " + contentOf(defaults));
                }
                bench.restartBar();
                bench.restartOrganiser();
            }};
}

// Nobody ends anything: all goes on where it was.
Fault serverFallsSilent(Silence silence, Moment moment) {
    return {.name = nameOf(silence) + " for a while, " + nameOf(moment),
            .isInShortForm = silence == Silence::Grabbed && moment == Moment::Collapse,
            .happen = [=](Bench& bench) {
                bringTo(bench, moment);
                PrivateDisplay& display = bench.desktop().display();
                if (moment != Moment::Start) {
                    const SilentServer silent(display, silence);
                    letPass(someRefreshes);
                    return;
                }
                const auto fallSilent = [&] {
                    auto silent = std::make_unique<SilentServer>(display, silence);
                    return std::jthread([silent = std::move(silent)]() mutable {
                        letPass(someRefreshes);
                        silent.reset();
                    });
                };
                bench.desktop().endOrganiser();
                {
                    const auto quiet = fallSilent();
                    bench.restartBar();
                }
                const auto quiet = fallSilent();
                bench.restartOrganiser();
            }};
}

} // namespace

std::vector<Fault> signalFaults() {
    std::vector<Fault> faults;
    for (const Silence silence : {Silence::Stopped, Silence::Grabbed}) {
        for (const Moment moment :
             {Moment::Start, Moment::Idle, Moment::Collapse, Moment::RowOpen}) {
            for (const int signal : {SIGTERM, SIGINT}) {
                faults.push_back(programsAreEnded(silence, moment, signal));
            }
            faults.push_back(serverFallsSilent(silence, moment));
        }
    }
    return faults;
}

} // namespace pelistra::testing
