#include "platform/linux/programs/X11RunningApplications.h"

#include "platform/linux/images/LinuxImage.h"
#include "platform/linux/programs/RaiseWindows.h"

#include <algorithm>
#include <utility>

namespace pelistra::linux {

namespace {

// Processes come and go; what is known of more than this many is thrown away and found again.
constexpr std::size_t mostKnown = 4096;

// A descriptor each, of which a program has about a thousand. Trays with more programs are rare.
constexpr std::ptrdiff_t mostHeld = 64;

// A list of a thousand icons of one program asks for that program a thousand times in a row.
constexpr std::chrono::milliseconds checkHolds{20};

} // namespace

class X11RunningApplications::Application final : public RunningApplication {
public:
    Application(X11RunningApplications& owner, ProcessId process, const Known& known)
        : owner_(&owner), process_(process), name_(known.name), entry_(known.entry) {}

    [[nodiscard]] std::optional<std::string> localizedName() const override {
        return name_.empty() ? std::nullopt : std::optional(name_);
    }
    [[nodiscard]] std::optional<std::string> bundleIdentifier() const override {
        return entry_ ? std::optional(entry_->id) : std::nullopt;
    }
    [[nodiscard]] ImagePtr icon() const override {
        return entry_ ? owner_->icon(entry_->icon) : nullptr;
    }
    [[nodiscard]] std::optional<FileUrl> bundleUrl() const override {
        return entry_ ? std::optional(FileUrl{.path = entry_->file.string()}) : std::nullopt;
    }
    [[nodiscard]] bool activate(ActivationOptions /*options*/) override {
        return owner_->activate(process_);
    }

private:
    X11RunningApplications* owner_;
    ProcessId process_;
    std::string name_;
    DesktopEntryPtr entry_;
};

X11RunningApplications::X11RunningApplications(std::string display, DesktopEntryPlaces places)
    : display_(std::move(display)), entries_(std::move(places)) {}

X11RunningApplications::~X11RunningApplications() = default;

RunningApplicationPtr X11RunningApplications::runningApplication(ProcessId processIdentifier) {
    const Known* const known = lookUp(processIdentifier);
    return known == nullptr ? nullptr
                            : std::make_shared<Application>(*this, processIdentifier, *known);
}

std::vector<ProcessId> X11RunningApplications::processIdentifiers() {
    std::vector<ProcessId> processes = listedProcesses();
    std::erase_if(processes, [this](ProcessId process) {
        const auto known = known_.find(process);
        return known != known_.end() && !known->second.isStill(process);
    });
    return processes;
}

bool X11RunningApplications::open(const FileUrl& url) {
    // Only what is installed, whoever asks: a path alone makes no application.
    const auto entry = entries_.withFile(url.path);
    return entry && launcher_.launch(*entry);
}

std::optional<std::string> X11RunningApplications::ownerName(const TrayIcon& icon) {
    if (!icon.className.empty() || !icon.instanceName.empty()) {
        if (classes_.size() > mostKnown) {
            classes_.clear();
        }
        const bool isNew = classes_
                               .try_emplace(icon.pid, WindowClass{.instanceName = icon.instanceName,
                                                                  .className = icon.className})
                               .second;
        if (isNew) {
            known_.erase(icon.pid);
        }
    }
    const Known* const known = lookUp(icon.pid);
    return known == nullptr || known->name.empty() ? std::nullopt : std::optional(known->name);
}

bool X11RunningApplications::Known::isStill(ProcessId process) const {
    return hold.holds() ? hold.runs() : startTimeOf(process) == startTime;
}

const X11RunningApplications::Known* X11RunningApplications::lookUp(ProcessId process) {
    const auto known = known_.find(process);
    if (known == known_.end()) {
        return meet(process);
    }
    const auto now = std::chrono::steady_clock::now();
    if (now - known->second.checked < checkHolds) {
        return &known->second;
    }
    if (!known->second.isStill(process)) {
        // The id may belong to another process now.
        known_.erase(known);
        classes_.erase(process);
        return meet(process);
    }
    known->second.checked = now;
    return &known->second;
}

const X11RunningApplications::Known* X11RunningApplications::meet(ProcessId process) {
    forgetEnded();
    if (known_.size() > mostKnown) {
        known_.clear();
    }
    // Held before anything is read, so that all of it is about the same process.
    ProcessHold hold(mayHoldAnother() ? process : 0);
    auto startTime = startTimeOf(process);
    if (!startTime) {
        classes_.erase(process);
        return nullptr;
    }
    const ProcessFacts facts = factsOf(process);
    DesktopEntryPtr entry = findEntry(process, facts);
    std::string name = entry ? entry->name : facts.displayName();
    return &known_
                .emplace(process, Known{.hold = std::move(hold),
                                        .startTime = std::move(startTime),
                                        .name = std::move(name),
                                        .entry = std::move(entry),
                                        .checked = std::chrono::steady_clock::now()})
                .first->second;
}

void X11RunningApplications::forgetEnded() {
    std::erase_if(known_, [this](const auto& known) {
        const auto& [process, what] = known;
        const bool hasEnded = what.hold.holds() && !what.hold.runs();
        if (hasEnded) {
            classes_.erase(process);
        }
        return hasEnded;
    });
}

bool X11RunningApplications::mayHoldAnother() const {
    return std::ranges::count_if(
               known_, [](const auto& known) { return known.second.hold.holds(); }) < mostHeld;
}

DesktopEntryPtr X11RunningApplications::findEntry(ProcessId process, const ProcessFacts& facts) {
    for (const std::string& id : {facts.flatpakId, facts.snapId}) {
        if (auto entry = entries_.withId(id)) {
            return entry;
        }
    }
    if (const auto known = classes_.find(process); known != classes_.end()) {
        for (const std::string& name : {known->second.className, known->second.instanceName}) {
            if (auto entry = entries_.withWindowClass(name)) {
                return entry;
            }
        }
    }
    for (const std::string& program : {facts.invokedAs, facts.executable}) {
        if (auto entry = entries_.withProgram(program)) {
            return entry;
        }
    }
    return nullptr;
}

ImagePtr X11RunningApplications::icon(const std::string& name) {
    if (name.empty()) {
        return nullptr;
    }
    auto& known = icons_[name];
    if (known == nullptr) {
        known = std::make_shared<ThemeIcon>(name);
    }
    // An icon that nobody finds is none: something else stands in for it from then on.
    return known->isMissing ? nullptr : known;
}

bool X11RunningApplications::activate(ProcessId process) {
    const Known* const known = lookUp(process);
    if (known == nullptr) {
        return false;
    }
    const DesktopEntryPtr entry = known->entry;
    const auto isWanted = [&](ProcessId candidate) {
        if (candidate == process) {
            return true;
        }
        const Known* const other = entry ? lookUp(candidate) : nullptr;
        return other != nullptr && other->entry == entry;
    };
    if (raiseWindows(display_, isWanted)) {
        return true;
    }
    // An entry that is kept out of the menus starts no window of its own.
    return entry && !entry->noDisplay && launcher_.launch(*entry);
}

} // namespace pelistra::linux
