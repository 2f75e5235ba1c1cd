// How long the core takes to bring the list of hidden icons up to date. Target: 10,000 windows in
// less than 3 ms, and no worse than in proportion to their number.

#include "base/Logger.h"
#include "overflow/OverflowServices.h"
#include "overflow/OverflowStore.h"
#include "overflow/PrivateMenuBarBridge.h"
#include "platform/EventPosting.h"
#include "platform/PrivateLibrary.h"
#include "platform/RunningApplications.h"
#include "platform/ScreenCapture.h"
#include "platform/WindowList.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace pelistra {
namespace {

constexpr double pitch = 30;
constexpr ProcessId firstPid = 1000;
constexpr ProcessId applicationCount = 200;
constexpr ProcessId ownPid = 1;

// A platform that answers at once, so that what is measured is the core.

class SilentLog final : public LogSink {
public:
    void write(std::string_view /*subsystem*/, std::string_view /*category*/, LogLevel /*level*/,
               std::string_view /*message*/) override {}
};

class QuietApplication final : public Application {
public:
    void setActivationPolicy(ActivationPolicy /*policy*/) override {}
    void activateIgnoringOtherApps() override {}
    void terminate() override {}
    [[nodiscard]] std::optional<Event> currentEvent() const override { return std::nullopt; }
    [[nodiscard]] const std::vector<std::string>& arguments() const override { return arguments_; }
    [[nodiscard]] std::optional<std::string> infoText(std::string_view /*key*/) const override {
        return std::nullopt;
    }
    [[nodiscard]] ProcessId processIdentifier() const override { return ownPid; }
    [[nodiscard]] ScreenPoint mouseLocation() const override { return {}; }

private:
    std::vector<std::string> arguments_;
};

class PlainApplication final : public RunningApplication {
public:
    [[nodiscard]] std::optional<std::string> localizedName() const override { return "Program"; }
    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override {
        return "org.example.program";
    }
    [[nodiscard]] ImagePtr icon() const override { return nullptr; }
    [[nodiscard]] std::optional<FileUrl> bundleUrl() const override { return std::nullopt; }
    [[nodiscard]] bool activate(ActivationOptions /*options*/) override { return false; }
};

class SomeApplications final : public RunningApplications {
public:
    [[nodiscard]] RunningApplicationPtr
    runningApplication(ProcessId /*processIdentifier*/) override {
        return application_;
    }
    [[nodiscard]] std::vector<ProcessId> processIdentifiers() override {
        std::vector<ProcessId> pids;
        pids.reserve(applicationCount);
        for (ProcessId index = 0; index < applicationCount; ++index) {
            pids.push_back(firstPid + index);
        }
        return pids;
    }
    [[nodiscard]] bool open(const FileUrl& /*url*/) override { return false; }

private:
    RunningApplicationPtr application_ = std::make_shared<PlainApplication>();
};

class NoCapture final : public ScreenCapture {
public:
    [[nodiscard]] bool preflightAccess() override { return false; }
    [[nodiscard]] bool requestAccess() override { return false; }
    [[nodiscard]] CaptureResult captureWindow(WindowId /*window*/,
                                              WindowImageOptions /*options*/) override {
        return CaptureRefusal::NoImage;
    }
};

class NoEvents final : public EventPosting {
public:
    [[nodiscard]] std::unique_ptr<EventSource> source(EventSourceState /*state*/) override {
        return nullptr;
    }
    [[nodiscard]] std::unique_ptr<MouseEvent> mouseEvent(EventSource& /*source*/,
                                                         EventType /*type*/, Point /*location*/,
                                                         MouseButton /*button*/) override {
        return nullptr;
    }
    [[nodiscard]] bool postToPid(ProcessId /*processIdentifier*/,
                                 const MouseEvent& /*event*/) override {
        return false;
    }
};

// A row of icons that moves by one pitch from look to look, in an order unlike that of their ids.
class MovingRow final : public PrivateLibrary, public WindowList {
public:
    explicit MovingRow(std::int32_t count) : count_(count) {}

    void step() { shift_ = shift_ == 0 ? pitch : 0; }

    [[nodiscard]] LibraryHandle open(const std::string& /*path*/, int /*mode*/) override {
        return this;
    }
    void close(LibraryHandle /*handle*/) override {}
    [[nodiscard]] MainConnectionFunction
    resolveMainConnection(LibraryHandle /*handle*/, const std::string& /*symbol*/) override {
        return [] { return ConnectionId{1}; };
    }
    [[nodiscard]] WindowCountFunction resolveWindowCount(LibraryHandle /*handle*/,
                                                         const std::string& /*symbol*/) override {
        return [this](ConnectionId, ConnectionId, std::int32_t* outCount) {
            *outCount = count_;
            return windowServerSuccess;
        };
    }
    [[nodiscard]] MenuBarWindowListFunction
    resolveMenuBarWindowList(LibraryHandle /*handle*/, const std::string& /*symbol*/) override {
        return [this](ConnectionId, ConnectionId, std::int32_t capacity, WindowId* outList,
                      std::int32_t* outCount) {
            for (std::int32_t place = 0; place < capacity; ++place) {
                outList[place] = idAt(place);
            }
            *outCount = count_;
            return windowServerSuccess;
        };
    }
    [[nodiscard]] WindowFrameFunction resolveWindowFrame(LibraryHandle /*handle*/,
                                                         const std::string& /*symbol*/) override {
        return [this](ConnectionId, WindowId window, Rect* outRect) {
            *outRect =
                makeRect<GlobalSpace>(-static_cast<double>(window) * pitch + shift_, 0, pitch, 24);
            return windowServerSuccess;
        };
    }

    // Moved out of what has been prepared: making the list is the platform's work.
    [[nodiscard]] std::optional<std::vector<WindowInfo>> copyWindowInfo() override {
        return std::move(prepared_);
    }
    void prepareInfo() {
        prepared_.emplace();
        prepared_->reserve(static_cast<std::size_t>(count_));
        for (std::int32_t place = 0; place < count_; ++place) {
            prepared_->push_back({.number = idAt(place),
                                  .ownerPid = firstPid + place % applicationCount,
                                  .ownerName = "Some Program " + std::to_string(place),
                                  .name = "Item-0",
                                  .layer = statusWindowLayer,
                                  .bounds = std::nullopt});
        }
    }

private:
    // 7 shares no factor with the counts, so every id comes up once.
    [[nodiscard]] WindowId idAt(std::int32_t place) const {
        return static_cast<WindowId>(place * 7 % count_) + 1;
    }

    std::int32_t count_;
    double shift_ = 0;
    std::optional<std::vector<WindowInfo>> prepared_;
};

void refreshWhileCollapsed(benchmark::State& state) {
    SilentLog log;
    QuietApplication application;
    SomeApplications applications;
    NoCapture capture;
    NoEvents events;
    MovingRow row(static_cast<std::int32_t>(state.range(0)));
    const OverflowServices services{.application = application,
                                    .log = log,
                                    .windowList = row,
                                    .privateLibrary = row,
                                    .runningApplications = applications,
                                    .screenCapture = capture,
                                    .eventPosting = events};
    OverflowStore store(std::make_shared<PrivateMenuBarBridge>(services), services);
    const Rect divider = makeRect<GlobalSpace>(0, 0, 3000, 24);
    row.prepareInfo();
    store.refreshWhileCollapsed(divider);
    if (store.items.get().size() != static_cast<std::size_t>(state.range(0))) {
        throw std::logic_error("the refresh did not find every window");
    }
    for ([[maybe_unused]] auto each : state) {
        state.PauseTiming();
        row.prepareInfo();
        row.step();
        state.ResumeTiming();
        store.refreshWhileCollapsed(divider);
    }
    state.SetComplexityN(state.range(0));
}

BENCHMARK(refreshWhileCollapsed)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(10000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);

} // namespace
} // namespace pelistra
