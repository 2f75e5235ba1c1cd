#pragma once

#include "platform/Application.h"
#include "platform/FileUrl.h"
#include "platform/Image.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pelistra {

// Bits by the platform's raw values (NSApplicationActivationOptions).
using ActivationOptions = std::uint64_t;
inline constexpr ActivationOptions activateAllWindows = 1;

// One running application. Each value is asked for only when it is needed, since some are costly.
class RunningApplication {
public:
    RunningApplication() = default;
    RunningApplication(const RunningApplication&) = delete;
    RunningApplication& operator=(const RunningApplication&) = delete;
    virtual ~RunningApplication() = default;

    // The name in the user's language; empty when the application has none.
    [[nodiscard]] virtual std::optional<std::string> localizedName() const = 0;
    // The identifier that does not change with language or version; empty when there is none.
    [[nodiscard]] virtual std::optional<std::string> bundleIdentifier() const = 0;
    // Null when there is none. The same application gives the same picture object as long as its
    // icon does not change, since pictures are compared by pointer.
    [[nodiscard]] virtual ImagePtr icon() const = 0;
    // Where its bundle, or the file that describes it, lies; empty when there is none.
    [[nodiscard]] virtual std::optional<FileUrl> bundleUrl() const = 0;

    // Brings the application forward; true when that was accepted.
    [[nodiscard]] virtual bool activate(ActivationOptions options) = 0;
};

using RunningApplicationPtr = std::shared_ptr<RunningApplication>;

// The applications that run now, and how to open one.
class RunningApplications {
public:
    RunningApplications() = default;
    RunningApplications(const RunningApplications&) = delete;
    RunningApplications& operator=(const RunningApplications&) = delete;
    virtual ~RunningApplications() = default;

    // Null when no application runs under that process id, 0 and negative ids included.
    [[nodiscard]] virtual RunningApplicationPtr runningApplication(ProcessId processIdentifier) = 0;
    // The process ids of all running applications, in any order.
    [[nodiscard]] virtual std::vector<ProcessId> processIdentifiers() = 0;
    // Opens what the URL names; true when that was accepted. Returns without waiting for it.
    [[nodiscard]] virtual bool open(const FileUrl& url) = 0;
};

} // namespace pelistra
