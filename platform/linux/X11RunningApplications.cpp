#include "platform/linux/X11RunningApplications.h"

#include "platform/linux/QtImages.h"
#include "platform/linux/X11RunningApplicationsLauncher.h"
#include "platform/linux/X11RunningApplicationsProcess.h"
#include "platform/linux/X11RunningApplicationsWindows.h"

#include <utility>

#include <QGuiApplication>
#include <QIcon>
#include <QPainter>

namespace pelistra::desktop {

namespace {

// Processes come and go; what is known of more than this many is thrown away and found again.
constexpr std::size_t mostKnown = 4096;

// A list of a thousand icons of one program asks for that program a thousand times in a row.
constexpr std::chrono::milliseconds oneMoment{20};

// An application's icon, drawn at whatever scale is asked for.
class ThemeImage final : public QtImage {
public:
    explicit ThemeImage(QIcon icon) : icon_(std::move(icon)) {}

    // The size that icons of applications are made for first of all.
    [[nodiscard]] Size size() const override { return {.width = edge, .height = edge}; }

    [[nodiscard]] bool draw(QPainter& painter, const QColor& /*label*/) const override {
        // The icon's own picture for these device pixels, not an enlarged one.
        const double scale = painter.transform().m11();
        const QSize pixels = (QSizeF(edge, edge) * scale).toSize();
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(QRect(0, 0, edge, edge), icon_.pixmap(pixels));
        return true;
    }

private:
    static constexpr int edge = 32;

    QIcon icon_;
};

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
    return runningProcesses();
}

bool X11RunningApplications::open(const FileUrl& url) {
    // Only what is installed, whoever asks: a path alone makes no application.
    const auto entry = entries_.withFile(url.path);
    return entry && launch(*entry);
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

const X11RunningApplications::Known* X11RunningApplications::lookUp(ProcessId process) {
    const auto now = std::chrono::steady_clock::now();
    if (const auto recent = known_.find(process);
        recent != known_.end() && now - recent->second.checked < oneMoment) {
        return &recent->second;
    }
    auto startTime = startTimeOf(process);
    if (!startTime) {
        known_.erase(process);
        classes_.erase(process);
        return nullptr;
    }
    if (known_.size() > mostKnown) {
        known_.clear();
    }
    Known& known = known_[process];
    if (known.startTime != *startTime) {
        if (!known.startTime.empty()) {
            // The id belongs to another process now.
            classes_.erase(process);
        }
        const ProcessFacts facts = factsOf(process);
        known.startTime = *std::move(startTime);
        known.entry = findEntry(process, facts);
        known.name = known.entry ? known.entry->name : facts.displayName();
    }
    known.checked = now;
    return &known;
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
    // Icons need a graphical application, which a command-line tool is not.
    if (name.empty() || qobject_cast<QGuiApplication*>(QCoreApplication::instance()) == nullptr) {
        return nullptr;
    }
    const auto known = icons_.find(name);
    if (known != icons_.end()) {
        return known->second;
    }
    const QString text = QString::fromStdString(name);
    QIcon icon = text.startsWith(QLatin1Char('/')) ? QIcon(text) : QIcon::fromTheme(text);
    ImagePtr image;
    if (!icon.availableSizes().isEmpty()) {
        image = std::make_shared<ThemeImage>(std::move(icon));
    }
    return icons_.emplace(name, std::move(image)).first->second;
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
    return entry && !entry->noDisplay && launch(*entry);
}

} // namespace pelistra::desktop
