#include "platform/linux/icons/TrayReader.h"

#include "platform/linux/icons/TrayIcons.h"
#include "platform/linux/screens/RootFrame.h"

#include <utility>

namespace pelistra::linux {

namespace {

// Two looks at one moment, as one refresh takes them, are one look. The bar needs longer to react
// to anything.
constexpr std::chrono::milliseconds oneMoment{1};

} // namespace

TrayReader::TrayReader(const x11::Connection& connection, ChangesHeard changesHeard,
                       std::chrono::milliseconds longestTrust)
    : changesHeard_(std::move(changesHeard)), longestTrust_(longestTrust), questions_(connection) {}

bool TrayReader::isOf(const Known& known, const TrayFacts& tray) {
    return tray.owner == known.view.owner && tray.serial == known.serial &&
           tray.primaryMonitor == known.primaryMonitor;
}

std::optional<std::uint64_t> TrayReader::changesOf(WindowId owner) const {
    return changesHeard_ && owner != XCB_NONE ? changesHeard_(owner) : std::nullopt;
}

bool TrayReader::isTrue(const Known& known) const {
    const auto age = std::chrono::steady_clock::now() - known.confirmed;
    return age < oneMoment ||
           (age < longestTrust_ && known.changes && changesOf(known.view.owner) == known.changes);
}

std::optional<TrayView> TrayReader::read() {
    if (known_ && isTrue(*known_)) {
        known_->view.roundTrips = 0;
        return known_->view;
    }
    if (!questions_.replies().begin(patience)) {
        return std::nullopt;
    }
    const WindowId owner = known_ ? known_->view.owner : WindowId{XCB_NONE};
    // Counted before the questions: what comes after it is a change to their answers.
    const auto changes = changesOf(owner);
    TrayFacts tray = questions_.findTray(owner);
    if (known_ && isOf(*known_, tray) && !questions_.replies().failed()) {
        known_->changes = changes;
        known_->confirmed = std::chrono::steady_clock::now();
        known_->view.roundTrips = questions_.replies().roundTrips();
        return known_->view;
    }
    known_.reset();
    return readAnew(std::move(tray));
}

std::optional<TrayView> TrayReader::readAnew(TrayFacts tray) {
    TrayView view;
    view.owner = tray.owner;
    if (tray.owner != XCB_NONE) {
        questions_.readOwner(tray);
        view.isMenuBar = tray.items.has_value();
        view.icons = readIcons(questions_, tray);
    }
    view.coordinates = Coordinates(tray.scale, tray.primaryMonitor);
    view.roundTrips = questions_.replies().roundTrips();
    if (questions_.replies().failed()) {
        return std::nullopt;
    }
    if (view.isMenuBar && tray.serial) {
        known_ = Known{.view = view,
                       .serial = *tray.serial,
                       .primaryMonitor = tray.primaryMonitor,
                       .confirmed = std::chrono::steady_clock::now(),
                       .changes = std::nullopt};
    }
    return view;
}

std::optional<Coordinates> TrayReader::coordinates() {
    if (!questions_.replies().begin(patience)) {
        return std::nullopt;
    }
    TrayFacts tray = questions_.findTray(XCB_NONE);
    if (tray.owner != XCB_NONE) {
        questions_.readScale(tray);
    }
    return questions_.replies().failed()
               ? std::nullopt
               : std::optional(Coordinates(tray.scale, tray.primaryMonitor));
}

std::optional<Rect> TrayReader::frameOf(WindowId window) {
    if (!questions_.replies().begin(patience)) {
        return std::nullopt;
    }
    const auto request = requestFrame(questions_.connection(), window);
    TrayFacts tray = questions_.findTray(XCB_NONE);
    const auto frame = takeFrame(questions_.replies(), request);
    if (frame && tray.owner != XCB_NONE) {
        questions_.readScale(tray);
    }
    if (!frame || questions_.replies().failed()) {
        return std::nullopt;
    }
    return Coordinates(tray.scale, tray.primaryMonitor).toGlobal(*frame);
}

} // namespace pelistra::linux
