#include "tests/statusbar/StatusBarFixture.h"

#include "tests/platform/ViewProbe.h"
#include "ui/Content.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace pelistra::testing {
namespace {

constexpr double barHeight = 24;
constexpr double controlWidth = 24;

} // namespace

StatusBarFixture::StatusBarFixture() {
    fake_.statusBar.afterLengthChange = [this] { layOut(); };
}

StatusBarFixture::~StatusBarFixture() {
    controller_.reset();
}

void StatusBarFixture::make() {
    controller_ = std::make_unique<StatusBarController>(fake_.platform, [this] {
        fake_.journal.note("showSettings");
        ++settingsShown_;
    });
    for (auto& item : fake_.statusBar.items) {
        if (item->button) {
            item->button->window = makeRect<ScreenSpace>(controlX, 958, item->length, barHeight);
            item->button->frame = makeRect<ScreenSpace>(controlX, 958, controlWidth, barHeight);
        }
    }
}

void StatusBarFixture::start() {
    make();
    fake_.mainQueue.runUntilIdle();
    fake_.journal.clear();
    fake_.log.lines.clear();
}

void StatusBarFixture::startCollapsed() {
    start();
    leftClick();
    passLatch();
    fake_.journal.clear();
    fake_.log.lines.clear();
}

void StatusBarFixture::startWithOpenRow() {
    startCollapsed();
    leftClick();
    passLatch();
    fake_.journal.clear();
    fake_.log.lines.clear();
}

std::string StatusBarFixture::arrow() {
    return imageName(control().button->image);
}

void StatusBarFixture::placeItems(double dividerX, double toControlX) {
    layoutIsFixed_ = true;
    fake_.windowList.place(fake_.application.pid, dividerName, dividerX, 14);
    fake_.windowList.place(fake_.application.pid, controlName, toControlX, controlWidth);
}

StatusBarFixture::Icon& StatusBarFixture::hideIcon(WindowId id, ProcessId pid, std::string owner) {
    fake_.runningApplications.running[pid] = {
        .localizedName = owner, .bundleIdentifier = {}, .icon = {}, .bundleUrl = {}};
    icons_.push_back({.id = id, .pid = pid, .owner = std::move(owner)});
    layOut();
    return icons_.back();
}

void StatusBarFixture::layOut() {
    if (layoutIsFixed_) {
        return;
    }
    auto& list = fake_.windowList.windows.emplace();
    double x = controlX + controlWidth;
    for (const auto& item : fake_.statusBar.items) {
        const double width = item->length < 0 ? controlWidth : item->length;
        x -= width;
        list.push_back(
            {.number = static_cast<WindowId>(100 + list.size()),
             .ownerPid = fake_.application.pid,
             .ownerName = "Pelistra",
             .name = *item->name,
             .layer = statusWindowLayer,
             .bounds = WindowBounds{.x = x, .y = 0, .width = width, .height = barHeight}});
    }
    fake_.privateLibrary.ids.clear();
    fake_.privateLibrary.frames.clear();
    for (const Icon& icon : icons_) {
        x -= icon.width;
        list.push_back(
            {.number = icon.id,
             .ownerPid = icon.pid,
             .ownerName = icon.owner,
             .name = "",
             .layer = statusWindowLayer,
             .bounds = WindowBounds{.x = x, .y = 0, .width = icon.width, .height = barHeight}});
        fake_.privateLibrary.ids.push_back(icon.id);
        fake_.privateLibrary.frames[icon.id] = makeRect<GlobalSpace>(x, 0, icon.width, barHeight);
    }
}

void StatusBarFixture::leftClick(std::uint64_t modifiers) {
    fake_.send({.type = EventType::LeftMouseUp, .modifierFlags = modifiers}, *control().button);
}

void StatusBarFixture::rightClickArrow() {
    fake_.send({.type = EventType::RightMouseUp}, *control().button);
}

bool StatusBarFixture::isCollapsed() {
    return divider().length != 14;
}

bool StatusBarFixture::rowIsOpen() const {
    return std::ranges::any_of(fake_.panels.made, [](const auto& panel) { return panel->visible; });
}

ui::View StatusBarFixture::row() const {
    if (fake_.panels.made.empty()) {
        throw std::logic_error("there is no second row yet");
    }
    return fake_.panels.made.back()->content->body();
}

bool StatusBarFixture::rowShows(std::string_view text) const {
    return showsText(row(), text);
}

std::vector<std::string> StatusBarFixture::takeJournal() {
    auto entries = fake_.journal.entries();
    fake_.journal.clear();
    return entries;
}

std::vector<std::string> StatusBarFixture::logged() const {
    std::vector<std::string> texts;
    for (const LogLine& line : fake_.log.lines) {
        if (line.category == "status-bar") {
            texts.push_back((line.level == LogLevel::Info ? "info: " : "error: ") + line.message);
        }
    }
    return texts;
}

} // namespace pelistra::testing
